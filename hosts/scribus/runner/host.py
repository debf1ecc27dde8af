"""Carries out one request inside Scribus and writes the answer.

Called as: scribus -g -ns -py host.py REQUEST, where REQUEST is one JSON object with
    operation   one of the functions in OPERATIONS
    answer      the path to write the answer to; it appears there whole
    document    the path of the document
    opened      the path of an empty file that is made when the document is open
and what the operation needs besides. The answer is a JSON object; one with "error" is a failure. All lengths
are points.
"""
import json
import os
import sys

import scribus


def open_document(request):
    """Opens the document. Gives the fonts that Scribus had to make up for it, as it lacks them.

    They are those that its list has gained; but it gains the fonts of a package too, which are in a folder
    beside the document.
    """
    known = set(scribus.getFontNames())
    scribus.openDoc(request["document"])
    if not scribus.haveDoc():
        raise RuntimeError("no document is open")
    open(request["opened"], "w").close()
    scribus.setUnit(scribus.UNIT_POINTS)
    own = os.path.join(os.path.dirname(os.path.realpath(request["document"])), "")
    return {font[0] for font in scribus.getXFontNames()
            if font[0] not in known and not os.path.realpath(font[5]).startswith(own)}


def info(request):
    """Describes the document, and saves what it holds in Scribus's present form to the path `copy`."""
    missing = open_document(request)
    files = {font[0]: font[5] for font in scribus.getXFontNames()}
    used = set(scribus.PDFfile().fonts) | missing
    pages = []
    for number in range(1, scribus.pageCount() + 1):
        width, height = scribus.getPageNSize(number)
        pages.append({"width": width, "height": height, "side": scribus.getPageType(number)})
    scribus.saveDocAs(request["copy"])
    return {
        "pages": pages,
        "fonts": [{"name": name, "file": "" if name in missing else files.get(name, ""), "missing": name in missing}
                  for name in sorted(used)],
    }


def preview(request):
    """Writes a picture of page `page`, from 1, at `dpi` to the path `output`, as PNG."""
    open_document(request)
    scribus.gotoPage(request["page"])
    image = scribus.ImageExport()
    image.type = "PNG"
    image.dpi = request["dpi"]
    image.scale = 100
    image.quality = 90
    image.saveAs(request["output"])
    return {}


def save_pdf(request, output, changes):
    """Writes the PDF to a path, with `changes` in the place of some of the options."""
    export = scribus.PDFfile()
    for name, value in {**request["options"], **changes}.items():
        if not hasattr(export, name):
            raise RuntimeError("this Scribus has no PDF option " + name)
        setattr(export, name, value)
    if request["subset"]:
        export.subsetList = export.fonts
    export.pages = request["pages"]
    export.file = output
    export.save()


def pdf(request):
    """Writes a PDF of `pages`, from 1, to the path `output`. `options` are attributes of the PDF export; without one of
    the `fonts` it fails.

    Where there is a path `probe`, the same goes there as PDF 1.4, in which everything shines through that does.
    """
    missing = open_document(request) & set(request["fonts"])
    if missing:
        raise RuntimeError("fonts are missing: " + ", ".join(sorted(missing)))
    if "probe" in request:
        save_pdf(request, request["probe"], {"version": 14})
    save_pdf(request, request["output"], {})
    return {}


OPERATIONS = {"info": info, "preview": preview, "pdf": pdf}


def main():
    request = json.loads(sys.argv[1])
    try:
        answer = OPERATIONS[request["operation"]](request)
    except BaseException as error:  # Scribus raises whatever it likes, SystemError among it
        answer = {"error": "%s: %s" % (type(error).__name__, error)}
    unfinished = request["answer"] + ".new"
    with open(unfinished, "w", encoding="utf-8") as file:
        json.dump(answer, file)
    os.replace(unfinished, request["answer"])
    # Scribus would end by itself, after it has put its windows away one by one.
    os._exit(0)


main()
