# For Scribus: writes a document of a hundred pages of text to the file that the last argument names.
import os
import sys

import scribus

PAGES = 100
scribus.newDocument(scribus.PAPER_A4, (40, 40, 40, 40), scribus.PORTRAIT, 1, scribus.UNIT_POINTS, scribus.PAGE_1, 0, PAGES)
for page in range(1, PAGES + 1):
    scribus.gotoPage(page)
    frame = scribus.createText(40, 40, 515, 760)
    scribus.setText(" ".join("Page %d, sentence %d of a text that fills it." % (page, n) for n in range(70)), frame)
scribus.saveDocAs(sys.argv[-1])
os._exit(0)  # Scribus would wait
