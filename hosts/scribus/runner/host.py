"""Carries out one request inside Scribus and writes the answer.

Called as: scribus -g -ns -py host.py REQUEST, where REQUEST is one JSON object with
    operation   one of the functions in OPERATIONS
    answer      the path to write the answer to; it appears there whole
    opened      the path of an empty file that is there while a document is open
and what the operation needs besides: the path of a `document`, for one. The answer is a JSON object; one with
"error" is a failure, and says with "opened" whether the document was open. All lengths are points.
"""
import json
import os
import sys

import scribus


def open_document(path, opened):
    """Opens a document. Gives the fonts that Scribus's list has gained by it: those that it made up, as it lacks
    them, and those of a folder beside the document, such as a package has.
    """
    known = set(scribus.getFontNames())
    if os.path.exists(opened):
        os.remove(opened)
    scribus.openDoc(path)
    if not scribus.haveDoc():
        raise RuntimeError("no document is open")
    open(opened, "w").close()
    scribus.setUnit(scribus.UNIT_POINTS)
    return set(scribus.getFontNames()) - known


def get_folder(path):
    return os.path.join(os.path.dirname(os.path.realpath(path)), "")


def find_missing(path, gained):
    """Those of the gained fonts that are not in the document's folder."""
    own = get_folder(path)
    return {font[0] for font in scribus.getXFontNames()
            if font[0] in gained and not os.path.realpath(font[5]).startswith(own)}


def describe(item, opened, gained):
    """Describes a document, and saves what it holds in Scribus's present form.

    `gained` has the fonts that earlier documents of this start have added to Scribus's list, and the folders of
    these documents. A font that came from another folder may be there or missing: who asks has to ask again, in
    another start.
    """
    path = item["document"]
    added = open_document(path, opened)
    used = set(scribus.PDFfile().fonts)
    earlier = used & set(gained)
    is_certain = all(gained[name] == get_folder(path) for name in earlier)
    gained.update({name: get_folder(path) for name in added})
    if not is_certain:
        return {"again": True}
    missing = find_missing(path, added | earlier)
    files = {font[0]: font[5] for font in scribus.getXFontNames()}
    pages = []
    for number in range(1, scribus.pageCount() + 1):
        width, height = scribus.getPageNSize(number)
        pages.append({"width": width, "height": height, "side": scribus.getPageType(number)})
    scribus.saveDocAs(item["copy"])
    return {
        "pages": pages,
        "fonts": [{"name": name, "file": "" if name in missing else files.get(name, ""), "missing": name in missing}
                  for name in sorted(used | missing)],
    }


def info(request):
    """Describes documents, one after the other. `list` is the path of a JSON list of objects, each with a
    `document`, a path `copy` for its present form, and the path of an `answer` of its own.
    """
    with open(request["list"], encoding="utf-8") as file:
        items = json.load(file)
    gained = {}
    for item in items:
        if scribus.haveDoc():
            scribus.closeDoc()
        write_answer(item["answer"], request["opened"], lambda: describe(item, request["opened"], gained))
    return {}


def preview(request):
    """Writes a picture of page `page`, from 1, at `dpi` to the path `output`, as PNG."""
    open_document(request["document"], request["opened"])
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
    document = request["document"]
    missing = find_missing(document, open_document(document, request["opened"])) & set(request["fonts"])
    if missing:
        raise RuntimeError("fonts are missing: " + ", ".join(sorted(missing)))
    if "probe" in request:
        save_pdf(request, request["probe"], {"version": 14})
    save_pdf(request, request["output"], {})
    return {}


OPERATIONS = {"info": info, "preview": preview, "pdf": pdf}


def write_answer(path, opened, work):
    try:
        answer = work()
    except BaseException as error:  # Scribus raises whatever it likes, SystemError among it
        answer = {"error": "%s: %s" % (type(error).__name__, error), "opened": os.path.exists(opened)}
    unfinished = path + ".new"
    with open(unfinished, "w", encoding="utf-8") as file:
        json.dump(answer, file)
    os.replace(unfinished, path)


def main():
    request = json.loads(sys.argv[1])
    write_answer(request["answer"], request["opened"], lambda: OPERATIONS[request["operation"]](request))
    # Scribus would end by itself, after it has put its windows away one by one.
    os._exit(0)


main()
