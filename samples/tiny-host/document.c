/* A text file as A4 pages of Courier, and the pages as PDF 1.4. */
#include "tiny_host.h"

#include <stdlib.h>
#include <string.h>

#define LINES 56 /* of a page */
#define LETTERS 80

int tiny_open(tiny_host* host, const char* path)
{
    FILE* const file = strlen(path) < TINY_PATH ? tiny_open_file(path, "rb") : NULL;
    const long length = file != NULL && fseek(file, 0, SEEK_END) == 0 ? ftell(file) : -1;
    char* const text = length < 0 ? NULL : calloc(1, (size_t)length + 1);
    const int is_read = text != NULL && fseek(file, 0, SEEK_SET) == 0 &&
                        fread(text, 1, (size_t)length, file) == (size_t)length;
    if (file != NULL)
        fclose(file);
    if (!is_read) {
        free(text);
        return 0;
    }
    free(host->text);
    host->text = text;
    host->length = (size_t)length;
    strcpy(host->path, path);
    return 1;
}

/* The length of the line at a place; the place moves to the next one. A byte 10xxxxxx belongs to the letter
 * before it. */
static size_t take_line(const tiny_host* host, size_t* at)
{
    const size_t start = *at;
    size_t end = start;
    int letters = 0;
    while (end < host->length && host->text[end] != '\n' &&
           ((host->text[end] & 0xC0) == 0x80 || ++letters <= LETTERS))
        ++end;
    *at = end < host->length && host->text[end] == '\n' ? end + 1 : end;
    return end - start;
}

int32_t tiny_count_pages(const tiny_host* host)
{
    size_t lines = 0;
    for (size_t at = 0; at < host->length; ++lines)
        take_line(host, &at);
    return lines == 0 ? 1 : (int32_t)((lines - 1) / LINES + 1);
}

/* Letters up to U+00FF are the same in the font's encoding; others become question marks. */
static void write_line(FILE* file, const char* text, size_t length)
{
    fputc('(', file);
    for (size_t at = 0; at < length; ++at) {
        unsigned code = (unsigned char)text[at];
        if (code >= 0x80) {
            const int is_latin = (code == 0xC2 || code == 0xC3) && at + 1 < length;
            code = is_latin ? (code & 3) << 6 | (text[at + 1] & 0x3F) : '?';
            while (at + 1 < length && (text[at + 1] & 0xC0) == 0x80)
                ++at;
        }
        fprintf(file, code < ' ' ? " " : "\\%03o", code);
    }
    fputs(") '\n", file);
}

/* Three objects: the page, what is on it, and the length of that. The inner edge of an odd page is the left.
 */
static void write_page(const tiny_host* host, const double bleed[4], uint32_t page, FILE* file, int object,
                       long* offsets)
{
    const double left = bleed[page % 2 == 1 ? HOPBOX_BLEED_INSIDE : HOPBOX_BLEED_OUTSIDE];
    const double right = bleed[page % 2 == 1 ? HOPBOX_BLEED_OUTSIDE : HOPBOX_BLEED_INSIDE];
    const double bottom = bleed[HOPBOX_BLEED_BOTTOM];
    const double trim[4] = {left, bottom, left + 595, bottom + 842};
    const double top = trim[3] + bleed[HOPBOX_BLEED_TOP];
    size_t at = 0;
    long start;
    for (uint32_t line = 0; line < (page - 1) * LINES; ++line)
        take_line(host, &at);

    offsets[object] = ftell(file);
    fprintf(file, "%d 0 obj << /Type /Page /Parent 2 0 R /Resources << /Font << /F 3 0 R >> >> ", object);
    fprintf(file, "/MediaBox [0 0 %g %g] /BleedBox [0 0 %g %g] ", trim[2] + right, top, trim[2] + right, top);
    fprintf(file, "/TrimBox [%g %g %g %g] ", trim[0], trim[1], trim[2], trim[3]);
    fprintf(file, "/Contents %d 0 R >> endobj\n", object + 1);
    offsets[object + 1] = ftell(file);
    fprintf(file, "%d 0 obj << /Length %d 0 R >> stream\n", object + 1, object + 2);
    start = ftell(file);
    fprintf(file, "BT /F 10 Tf 13 TL %g %g Td\n", trim[0] + 56, trim[3] - 56);
    for (int line = 0; line < LINES && at < host->length; ++line) {
        const char* const text = host->text + at;
        write_line(file, text, take_line(host, &at));
    }
    fputs("ET\n", file);
    offsets[object + 2] = ftell(file);
    fputs("endstream endobj\n", file);
    start = offsets[object + 2] - start;
    offsets[object + 2] = ftell(file);
    fprintf(file, "%d 0 obj %ld endobj\n", object + 2, start);
}

int tiny_write_pdf(const tiny_host* host, const double bleed[4], const uint32_t* pages, size_t count,
                   const char* path)
{
    const int objects = 4 + (int)count * 3;
    long* const offsets = calloc((size_t)objects, sizeof *offsets);
    FILE* const file = offsets == NULL ? NULL : tiny_open_file(path, "wb");
    int is_whole = 0;
    if (file != NULL) {
        offsets[1] = fprintf(file, "%%PDF-1.4\n");
        fputs("1 0 obj << /Type /Catalog /Pages 2 0 R >> endobj\n", file);
        offsets[2] = ftell(file);
        fprintf(file, "2 0 obj << /Type /Pages /Count %d /Kids [", (int)count);
        for (int object = 4; object < objects; object += 3)
            fprintf(file, "%d 0 R ", object);
        fputs("] >> endobj\n", file);
        offsets[3] = ftell(file);
        fputs("3 0 obj << /Type /Font /Subtype /Type1 /BaseFont /Courier ", file);
        fputs("/Encoding /WinAnsiEncoding >> endobj\n", file);
        for (size_t page = 0; page < count; ++page)
            write_page(host, bleed, pages[page], file, 4 + (int)page * 3, offsets);
        offsets[0] = ftell(file);
        fprintf(file, "xref\n0 %d\n0000000000 65535 f \n", objects);
        for (int object = 1; object < objects; ++object)
            fprintf(file, "%010ld 00000 n \n", offsets[object]);
        fprintf(file, "trailer << /Size %d /Root 1 0 R >>\nstartxref\n%ld\n%%%%EOF\n", objects, offsets[0]);
        is_whole = !ferror(file);
        is_whole = fclose(file) == 0 && is_whole;
    }
    free(offsets);
    return is_whole;
}
