//@target indesign
//@targetengine "hopbox"
// Compiled by tools/script; edit the TypeScript sources instead.
// Sources: 7ca4cbfbd410a0cfe94d70e5c1ac2aa2cc986bec0940e57abcf04fcf521f9a56
"use strict";
// The script engine has no reader of JSON, and its own evaluation would run what it reads.
var Hopbox;
(function (Hopbox) {
    // Texts are written in ASCII: the connection then needs no encoding.
    function writeText(text) {
        var written = '"';
        for (var i = 0; i < text.length; i++) {
            var code = text.charCodeAt(i);
            var character = text.charAt(i);
            if (character === '"' || character === "\\")
                written += "\\" + character;
            else if (code >= 0x20 && code < 0x7f)
                written += character;
            else
                written += "\\u" + ("000" + code.toString(16)).slice(-4);
        }
        return written + '"';
    }
    function writeJson(value) {
        if (typeof value === "string")
            return writeText(value);
        if (value === null || typeof value !== "object")
            return String(value);
        var parts = [];
        if (value instanceof Array) {
            for (var i = 0; i < value.length; i++)
                parts.push(writeJson(value[i]));
            return "[" + parts.join(",") + "]";
        }
        for (var name in value)
            parts.push(writeText(name) + ":" + writeJson(value[name]));
        return "{" + parts.join(",") + "}";
    }
    Hopbox.writeJson = writeJson;
    // Reads one value. Raises an error for any text that is no JSON.
    function readJson(text) {
        var reader = new Reader(text);
        var value = reader.readValue();
        reader.expectEnd();
        return value;
    }
    Hopbox.readJson = readJson;
    var Reader = /** @class */ (function () {
        function Reader(text) {
            this.text = text;
            this.at = 0;
        }
        Reader.prototype.readValue = function () {
            var character = this.skip();
            if (character === "{")
                return this.readObject();
            if (character === "[")
                return this.readArray();
            if (character === '"')
                return this.readText();
            return this.readWord();
        };
        Reader.prototype.expectEnd = function () {
            if (this.skip() !== "")
                this.fail();
        };
        Reader.prototype.fail = function () {
            throw new Error("no JSON at " + this.at);
        };
        // The next character that is no space; empty at the end.
        Reader.prototype.skip = function () {
            while (this.at < this.text.length && " \t\r\n".indexOf(this.text.charAt(this.at)) >= 0)
                this.at++;
            return this.text.charAt(this.at);
        };
        Reader.prototype.expect = function (character) {
            if (this.skip() !== character)
                this.fail();
            this.at++;
        };
        Reader.prototype.readObject = function () {
            var made = {};
            this.at++;
            while (this.skip() !== "}") {
                var name = this.readText();
                this.expect(":");
                made[name] = this.readValue();
                if (this.skip() !== "}")
                    this.expect(",");
            }
            this.at++;
            return made;
        };
        Reader.prototype.readArray = function () {
            var made = [];
            this.at++;
            while (this.skip() !== "]") {
                made.push(this.readValue());
                if (this.skip() !== "]")
                    this.expect(",");
            }
            this.at++;
            return made;
        };
        Reader.prototype.readText = function () {
            this.expect('"');
            var made = "";
            while (this.text.charAt(this.at) !== '"') {
                if (this.at >= this.text.length)
                    this.fail();
                made += this.text.charAt(this.at) === "\\" ? this.readEscape() : this.text.charAt(this.at);
                this.at++;
            }
            this.at++;
            return made;
        };
        Reader.prototype.readEscape = function () {
            var character = this.text.charAt(++this.at);
            var found = "bfnrt".indexOf(character);
            if (found >= 0 && character !== "")
                return "\b\f\n\r\t".charAt(found);
            if (character !== "u")
                return character;
            var digits = this.text.substr(this.at + 1, 4);
            if (!/^[0-9a-fA-F]{4}$/.test(digits))
                this.fail();
            this.at += 4;
            return String.fromCharCode(parseInt(digits, 16));
        };
        Reader.prototype.readWord = function () {
            var start = this.at;
            while (this.at < this.text.length && ",]} \t".indexOf(this.text.charAt(this.at)) < 0)
                this.at++;
            var word = this.text.substring(start, this.at);
            if (word === "true" || word === "false")
                return word === "true";
            if (word === "null")
                return null;
            if (!/^-?[0-9]+(\.[0-9]+)?([eE][-+]?[0-9]+)?$/.test(word))
                this.fail();
            return Number(word);
        };
        return Reader;
    }());
})(Hopbox || (Hopbox = {}));
// What operations are given and what they answer.
var Hopbox;
(function (Hopbox) {
    Hopbox.OK = 0;
    Hopbox.NONE = 1;
    Hopbox.FAILED = 2;
    Hopbox.CANCELLED = 3;
    Hopbox.UNSUPPORTED = 5;
    // Ends an operation with a result that is no fault of the application's.
    var Stop = /** @class */ (function () {
        function Stop(result) {
            this.result = result;
        }
        return Stop;
    }());
    Hopbox.Stop = Stop;
    // What the error of an operation means for its answer. The application tells a cancel by this number.
    function resultOf(error) {
        var userCancelled = -128;
        if (error instanceof Stop)
            return error.result;
        var numbered = error;
        return numbered !== null && numbered.number === userCancelled ? Hopbox.CANCELLED : Hopbox.FAILED;
    }
    Hopbox.resultOf = resultOf;
    // The objects that the helper knows by number, until its action is over.
    var known = [];
    function forgetObjects() {
        known = [];
    }
    Hopbox.forgetObjects = forgetObjects;
    function give(object) {
        known.push(object);
        return known.length;
    }
    function giveDocument(document) {
        return give(document);
    }
    Hopbox.giveDocument = giveDocument;
    function giveBook(book) {
        return give(book);
    }
    Hopbox.giveBook = giveBook;
    // A request's arguments. What is missing or of another type ends the operation.
    var Request = /** @class */ (function () {
        function Request(line) {
            this.line = line;
        }
        Request.prototype.text = function (name) {
            var value = this.line[name];
            if (typeof value !== "string")
                throw new Stop(Hopbox.UNSUPPORTED);
            return value;
        };
        Request.prototype.number = function (name) {
            var value = this.line[name];
            if (typeof value !== "number")
                throw new Stop(Hopbox.UNSUPPORTED);
            return value;
        };
        Request.prototype.list = function (name) {
            var value = this.line[name];
            if (!(value instanceof Array))
                throw new Stop(Hopbox.UNSUPPORTED);
            return value;
        };
        Request.prototype.file = function (name) {
            return File(this.text(name));
        };
        Request.prototype.document = function () {
            var object = known[this.number("document") - 1];
            if (!(object instanceof Document) || !object.isValid)
                throw new Stop(Hopbox.FAILED);
            return object;
        };
        Request.prototype.book = function () {
            var object = known[this.number("book") - 1];
            if (!(object instanceof Book) || !object.isValid)
                throw new Stop(Hopbox.FAILED);
            return object;
        };
        return Request;
    }());
    Hopbox.Request = Request;
    // Does something without the application's dialogs and alerts: whoever waits for the answer could not see
    // them behind the helper's window.
    function quietly(work) {
        var preferences = app.scriptPreferences;
        var level = preferences.userInteractionLevel;
        preferences.userInteractionLevel = UserInteractionLevels.NEVER_INTERACT;
        try {
            return work();
        }
        finally {
            preferences.userInteractionLevel = level;
        }
    }
    Hopbox.quietly = quietly;
})(Hopbox || (Hopbox = {}));
// The preset that an export goes by: made for it, and removed after it.
var Hopbox;
(function (Hopbox) {
    var presetName = "Hopbox export (temporary)";
    // An item of an enumeration by its name.
    function itemOf(items, value) {
        var item = items[String(value)];
        if (item === undefined || typeof item === "string")
            throw new Error("no item " + String(value));
        return item;
    }
    // Sets one property. False for one that this script does not know.
    function setEnumeration(preset, name, value) {
        switch (name) {
            case "acrobatCompatibility":
                preset.acrobatCompatibility = itemOf(AcrobatCompatibility, value);
                return true;
            case "standardsCompliance":
                preset.standardsCompliance = itemOf(PDFXStandards, value);
                return true;
            case "pdfColorSpace":
                preset.pdfColorSpace = itemOf(PDFColorSpace, value);
                return true;
            case "compressionType":
                preset.compressionType = itemOf(PDFCompressionType, value);
                return true;
            case "pdfMarkType":
                preset.pdfMarkType = itemOf(MarkTypes, value);
                return true;
            case "printerMarkWeight":
                preset.printerMarkWeight = itemOf(PDFMarkWeight, value);
                return true;
            case "colorBitmapCompression":
                preset.colorBitmapCompression = itemOf(BitmapCompression, value);
                return true;
            case "colorBitmapQuality":
                preset.colorBitmapQuality = itemOf(CompressionQuality, value);
                return true;
            case "colorBitmapSampling":
                preset.colorBitmapSampling = itemOf(Sampling, value);
                return true;
            case "grayscaleBitmapCompression":
                preset.grayscaleBitmapCompression = itemOf(BitmapCompression, value);
                return true;
            case "grayscaleBitmapQuality":
                preset.grayscaleBitmapQuality = itemOf(CompressionQuality, value);
                return true;
            case "grayscaleBitmapSampling":
                preset.grayscaleBitmapSampling = itemOf(Sampling, value);
                return true;
            case "monochromeBitmapCompression":
                preset.monochromeBitmapCompression = itemOf(MonoBitmapCompression, value);
                return true;
            case "monochromeBitmapSampling":
                preset.monochromeBitmapSampling = itemOf(Sampling, value);
                return true;
            default: return false;
        }
    }
    function setNumber(preset, name, value) {
        switch (name) {
            case "subsetFontsBelow":
                preset.subsetFontsBelow = value;
                return true;
            case "colorBitmapSamplingDPI":
                preset.colorBitmapSamplingDPI = value;
                return true;
            case "thresholdToCompressColor":
                preset.thresholdToCompressColor = value;
                return true;
            case "grayscaleBitmapSamplingDPI":
                preset.grayscaleBitmapSamplingDPI = value;
                return true;
            case "thresholdToCompressGray":
                preset.thresholdToCompressGray = value;
                return true;
            case "monochromeBitmapSamplingDPI":
                preset.monochromeBitmapSamplingDPI = value;
                return true;
            case "thresholdToCompressMonochrome":
                preset.thresholdToCompressMonochrome = value;
                return true;
            default: return false;
        }
    }
    function setText(preset, name, value) {
        switch (name) {
            case "bleedTop":
                preset.bleedTop = value;
                return true;
            case "bleedBottom":
                preset.bleedBottom = value;
                return true;
            case "bleedInside":
                preset.bleedInside = value;
                return true;
            case "bleedOutside":
                preset.bleedOutside = value;
                return true;
            case "pageMarksOffset":
                preset.pageMarksOffset = value;
                return true;
            case "pdfDestinationProfile":
                preset.pdfDestinationProfile = value;
                return true;
            case "pdfXProfile":
                preset.pdfXProfile = value;
                return true;
            case "outputCondition":
                preset.outputCondition = value;
                return true;
            case "outputConditionName":
                preset.outputConditionName = value;
                return true;
            case "ocRegistry":
                preset.ocRegistry = value;
                return true;
            default: return setEnumeration(preset, name, value);
        }
    }
    function setSwitch(preset, name, value) {
        switch (name) {
            case "compressTextAndLineArt":
                preset.compressTextAndLineArt = value;
                return true;
            case "optimizePDF":
                preset.optimizePDF = value;
                return true;
            case "generateThumbnails":
                preset.generateThumbnails = value;
                return true;
            case "cropMarks":
                preset.cropMarks = value;
                return true;
            case "bleedMarks":
                preset.bleedMarks = value;
                return true;
            case "registrationMarks":
                preset.registrationMarks = value;
                return true;
            case "colorBars":
                preset.colorBars = value;
                return true;
            case "pageInformationMarks":
                preset.pageInformationMarks = value;
                return true;
            case "useDocumentBleedWithPDF":
                preset.useDocumentBleedWithPDF = value;
                return true;
            case "includeSlugWithPDF":
                preset.includeSlugWithPDF = value;
                return true;
            case "exportReaderSpreads":
                preset.exportReaderSpreads = value;
                return true;
            case "includeBookmarks":
                preset.includeBookmarks = value;
                return true;
            case "includeHyperlinks":
                preset.includeHyperlinks = value;
                return true;
            case "exportLayers":
                preset.exportLayers = value;
                return true;
            case "includeICCProfiles":
                preset.includeICCProfiles = value;
                return true;
            case "includeStructure":
                preset.includeStructure = value;
                return true;
            case "exportNonprintingObjects":
                preset.exportNonprintingObjects = value;
                return true;
            case "exportGuidesAndGrids":
                preset.exportGuidesAndGrids = value;
                return true;
            case "omitBitmaps":
                preset.omitBitmaps = value;
                return true;
            case "omitEPS":
                preset.omitEPS = value;
                return true;
            case "omitPDF":
                preset.omitPDF = value;
                return true;
            case "simulateOverprint":
                preset.simulateOverprint = value;
                return true;
            case "cropImagesToFrames":
                preset.cropImagesToFrames = value;
                return true;
            case "ignoreSpreadOverrides":
                preset.ignoreSpreadOverrides = value;
                return true;
            default: return false;
        }
    }
    function setProperty(preset, name, value) {
        if (typeof value === "boolean")
            return setSwitch(preset, name, value);
        if (typeof value === "number")
            return setNumber(preset, name, value);
        return typeof value === "string" && setText(preset, name, value);
    }
    // Removes presets of exports that did not come to their end.
    function removeLeftPresets() {
        var presets = app.pdfExportPresets;
        for (var i = presets.length - 1; i >= 0; i--) {
            var preset = presets.item(i);
            if (preset.name.indexOf(presetName) === 0)
                preset.remove();
        }
    }
    Hopbox.removeLeftPresets = removeLeftPresets;
    // Works with a preset of these properties, pairs of name and value in their order. One that can't be set
    // ends the export: its PDF would be another than was asked for.
    function withPreset(properties, work) {
        removeLeftPresets();
        var preset = app.pdfExportPresets.add({ name: presetName });
        try {
            for (var i = 0; i < properties.length; i++) {
                var pair = properties[i];
                if (!(pair instanceof Array) || !setProperty(preset, String(pair[0]), pair[1]))
                    throw new Hopbox.Stop(Hopbox.UNSUPPORTED);
            }
            work(preset);
        }
        finally {
            preset.remove();
        }
    }
    Hopbox.withPreset = withPreset;
})(Hopbox || (Hopbox = {}));
var Hopbox;
(function (Hopbox) {
    function sameFile(one, path) {
        var isCaseless = File.fs === "Windows";
        return isCaseless ? one.fsName.toLowerCase() === path.toLowerCase() : one.fsName === path;
    }
    function findOpen(path) {
        for (var i = 0; i < app.documents.length; i++) {
            var document = app.documents.item(i);
            if (document.saved && sameFile(document.fullName, path))
                return document;
        }
        return null;
    }
    // The place of the page that a text names: the page that bears it, else the one at that place.
    function findPage(document, text) {
        for (var i = 0; i < document.pages.length; i++)
            if (document.pages.item(i).name === text)
                return i;
        var place = /^[0-9]+$/.test(text) ? parseInt(text, 10) : 0;
        if (place < 1 || place > document.pages.length)
            throw new Hopbox.Stop(Hopbox.FAILED);
        return place - 1;
    }
    function trim(text) {
        return text.replace(/^\s+|\s+$/g, "");
    }
    // A part is a page, or the first and the last of some; a page's own name may have a hyphen.
    function addPart(document, part, pages) {
        var ends = part.split("-");
        var first = 0;
        var last = 0;
        if (ends.length === 2) {
            first = findPage(document, trim(ends[0]));
            last = findPage(document, trim(ends[1]));
            if (last < first)
                throw new Hopbox.Stop(Hopbox.FAILED);
        }
        else {
            first = last = findPage(document, part);
        }
        for (var i = first; i <= last; i++)
            pages.push(document.pages.item(i).id);
    }
    function pagesOfRange(document, range) {
        var pages = [];
        var parts = range.split(",");
        for (var i = 0; i < parts.length; i++)
            addPart(document, trim(parts[i]), pages);
        return pages;
    }
    function missingFonts(document) {
        var names = [];
        for (var i = 0; i < document.fonts.length; i++) {
            var font = document.fonts.item(i);
            if (font.status === FontStatus.NOT_AVAILABLE || font.status === FontStatus.SUBSTITUTED)
                names.push(font.name);
        }
        return names;
    }
    function save(document) {
        if (document.saved) {
            ;
            document.save();
            return;
        }
        var chosen = File.saveDialog(document.name);
        if (chosen === null)
            throw new Hopbox.Stop(Hopbox.CANCELLED);
        document.save(chosen);
    }
    // The helper's numbers of units.
    function unitOf(units) {
        switch (units) {
            case MeasurementUnits.PICAS: return 1;
            case MeasurementUnits.INCHES: return 2;
            case MeasurementUnits.INCHES_DECIMAL: return 2;
            case MeasurementUnits.CENTIMETERS: return 3;
            case MeasurementUnits.MILLIMETERS: return 4;
            default: return 0;
        }
    }
    // Documents that were opened without a window are none that the user sees.
    function hasFrontDocument() {
        for (var i = 0; i < app.documents.length; i++)
            if (app.documents.item(i).visible)
                return true;
        return false;
    }
    Hopbox.hasFrontDocument = hasFrontDocument;
    function frontDocument() {
        if (!hasFrontDocument())
            throw new Hopbox.Stop(Hopbox.NONE);
        return app.activeDocument;
    }
    Hopbox.documentOperations = {
        get_unit: function () {
            var preferences = hasFrontDocument() ? app.activeDocument.viewPreferences : app.viewPreferences;
            return unitOf(preferences.horizontalMeasurementUnits);
        },
        get_front_document: function () {
            return Hopbox.giveDocument(frontDocument());
        },
        find_open_document: function (request) {
            var document = findOpen(request.text("path"));
            if (document === null)
                throw new Hopbox.Stop(Hopbox.NONE);
            return Hopbox.giveDocument(document);
        },
        open_document: function (request) {
            var document = Hopbox.quietly(function () {
                return app.open(request.file("path"), false);
            });
            if (!(document instanceof Document))
                throw new Hopbox.Stop(Hopbox.FAILED);
            return Hopbox.giveDocument(document);
        },
        close_document: function (request) {
            var document = request.document();
            Hopbox.quietly(function () {
                document.close(SaveOptions.NO);
            });
            return null;
        },
        is_document_saved: function (request) {
            var document = request.document();
            return document.saved && !document.modified;
        },
        save_document: function (request) {
            save(request.document());
            return null;
        },
        get_document_file: function (request) {
            var document = request.document();
            if (!document.saved)
                throw new Hopbox.Stop(Hopbox.NONE);
            return document.fullName.fsName;
        },
        get_document_name: function (request) {
            return request.document().name;
        },
        get_pages: function (request) {
            var pages = request.document().pages;
            var numbers = [];
            for (var i = 0; i < pages.length; i++)
                numbers.push(pages.item(i).id);
            return numbers;
        },
        get_pages_of_range: function (request) {
            return pagesOfRange(request.document(), request.text("range"));
        },
        get_missing_fonts: function (request) {
            return missingFonts(request.document());
        }
    };
})(Hopbox || (Hopbox = {}));
var Hopbox;
(function (Hopbox) {
    function contents(request) {
        return request.book().bookContents;
    }
    Hopbox.bookOperations = {
        get_active_book: function () {
            if (app.books.length === 0)
                throw new Hopbox.Stop(Hopbox.NONE);
            return Hopbox.giveBook(app.activeBook);
        },
        get_book_file: function (request) {
            var book = request.book();
            if (!book.saved)
                throw new Hopbox.Stop(Hopbox.NONE);
            return book.fullName.fsName;
        },
        get_book_name: function (request) {
            return request.book().name;
        },
        is_book_modified: function (request) {
            return request.book().modified;
        },
        save_book: function (request) {
            var book = request.book();
            book.save();
            return null;
        },
        get_book_document_count: function (request) {
            return contents(request).length;
        },
        get_book_document_file: function (request) {
            var index = request.number("index");
            if (index < 0 || index >= contents(request).length)
                throw new Hopbox.Stop(Hopbox.FAILED);
            return contents(request).item(index).fullName.fsName;
        }
    };
})(Hopbox || (Hopbox = {}));
// What makes files: PDFs, packages, the report of a package.
var Hopbox;
(function (Hopbox) {
    // Pages as the application reads them: "+3" is the third of the document, whatever number it bears.
    function rangeOf(document, pages) {
        var places = [];
        var isAll = pages.length === document.pages.length;
        for (var i = 0; i < pages.length; i++) {
            var page = document.pages.itemByID(Number(pages[i]));
            if (!page.isValid)
                throw new Hopbox.Stop(Hopbox.FAILED);
            isAll = isAll && page.documentOffset === i;
            places.push("+" + (page.documentOffset + 1));
        }
        return isAll ? PageRange.ALL_PAGES : places.join(",");
    }
    // The application keeps these for its next export, which is the user's own.
    function withPreferences(range, work) {
        var preferences = app.pdfExportPreferences;
        var before = { range: preferences.pageRange, view: preferences.viewPDF };
        try {
            preferences.pageRange = range;
            preferences.viewPDF = false;
            Hopbox.quietly(work);
        }
        finally {
            preferences.pageRange = before.range;
            preferences.viewPDF = before.view;
        }
    }
    function exportDocument(request) {
        var document = request.document();
        Hopbox.withPreset(request.list("preset"), function (preset) {
            withPreferences(rangeOf(document, request.list("pages")), function () {
                document.exportFile(ExportFormat.PDF_TYPE, request.file("output"), false, preset);
            });
        });
        return null;
    }
    function exportBook(request) {
        var book = request.book();
        Hopbox.withPreset(request.list("preset"), function (preset) {
            withPreferences(PageRange.ALL_PAGES, function () {
                book.exportFile(ExportFormat.PDF_TYPE, request.file("output"), false, preset);
            });
        });
        return null;
    }
    // The eight settings are in the order of the call, but for the three between the seventh and the eighth:
    // neither IDML nor PDF goes into a package.
    function packageTo(source, request) {
        var on = request.list("settings");
        var setting = function (index) {
            if (typeof on[index] !== "boolean")
                throw new Hopbox.Stop(Hopbox.UNSUPPORTED);
            return on[index] === true;
        };
        var isDone = Hopbox.quietly(function () {
            return source.packageForPrint(request.file("output"), setting(0), setting(1), setting(2), setting(3), setting(4), setting(5), setting(6), false, false, "", setting(7), "");
        });
        if (!isDone)
            throw new Hopbox.Stop(Hopbox.FAILED);
        return null;
    }
    function writeReport(request) {
        var document = request.document();
        var lines = [document.name, "", "Fonts:"];
        for (var i = 0; i < document.fonts.length; i++) {
            var font = document.fonts.item(i);
            lines.push(font.name.replace("\t", " ") + (font.status === FontStatus.INSTALLED ? "" : " (not installed)"));
        }
        lines.push("", "Links:");
        for (var i = 0; i < document.links.length; i++) {
            var link = document.links.item(i);
            lines.push(link.name + (link.status === LinkStatus.LINK_MISSING ? " (missing)" : ""));
        }
        var file = new File(request.text("output") + "/Package Report.txt");
        file.encoding = "UTF-8";
        if (!file.open("w") || !file.write(lines.join("\n") + "\n") || !file.close())
            throw new Hopbox.Stop(Hopbox.FAILED);
        return null;
    }
    Hopbox.outputOperations = {
        export_document: exportDocument,
        export_book: exportBook,
        package_document: function (request) {
            return packageTo(request.document(), request);
        },
        package_book: function (request) {
            return packageTo(request.book(), request);
        },
        write_report: writeReport
    };
})(Hopbox || (Hopbox = {}));
// The script's end of the talk with the helper: it says a line and reads one. It never waits for a line that
// it has not asked for, so the application goes on between two idle tasks.
var Hopbox;
(function (Hopbox) {
    var version = 1;
    var patience = 60; // seconds for a line
    var longestRun = 250; // milliseconds of an idle task
    var folderName = "/Morvane Prefs Folder/Hopbox Bridge/";
    var socket = null;
    var refusal = "";
    function isConnected() {
        return socket !== null;
    }
    Hopbox.isConnected = isConnected;
    // Why the helper does not serve this application; empty while it may.
    function getRefusal() {
        return refusal;
    }
    Hopbox.getRefusal = getRefusal;
    function disconnect() {
        if (socket !== null)
            socket.close();
        socket = null;
        Hopbox.forgetObjects();
    }
    Hopbox.disconnect = disconnect;
    // Says a line and gives the one that comes back; null when the helper is gone.
    function exchange(line) {
        if (socket === null)
            return null;
        try {
            var reply = socket.write(Hopbox.writeJson(line) + "\n") ? Hopbox.readJson(socket.readln()) : null;
            if (reply !== null && typeof reply === "object" && !(reply instanceof Array))
                return reply;
        }
        catch (error) {
            // no JSON: the helper ended in the middle of it, or before
        }
        disconnect();
        return null;
    }
    function findOperation(name) {
        if (typeof name !== "string")
            return null;
        return Hopbox.documentOperations[name] || Hopbox.bookOperations[name] || Hopbox.outputOperations[name] || null;
    }
    function answer(line) {
        var operation = findOperation(line["do"]);
        var made = { answer: line["request"], result: Hopbox.UNSUPPORTED };
        if (operation === null)
            return made;
        try {
            made["value"] = operation(new Hopbox.Request(line));
            made["result"] = Hopbox.OK;
        }
        catch (error) {
            made["result"] = Hopbox.resultOf(error);
            if (error instanceof Error)
                made["error"] = error.description;
        }
        return made;
    }
    // Says a line and does what the helper asks for until it answers the line itself, or the time is over: a
    // request that is left then is answered first the next time.
    var left = null;
    function converse(line, milliseconds) {
        var start = new Date().getTime();
        var reply = exchange(line);
        while (reply !== null && reply["request"] !== undefined) {
            if (milliseconds > 0 && new Date().getTime() - start > milliseconds) {
                left = reply;
                return {};
            }
            reply = exchange(answer(reply));
        }
        return reply;
    }
    // Serves the helper for a short while. False when its action is over, or the helper is gone.
    function serve() {
        var first = left === null ? { poll: true } : answer(left);
        left = null;
        var reply = converse(first, longestRun);
        if (reply === null)
            return false;
        if (reply["finished"] !== true)
            return true;
        Hopbox.forgetObjects();
        return false;
    }
    Hopbox.serve = serve;
    // What an entry is to show; null when the helper can't tell now.
    function askState(action) {
        var reply = left === null ? converse({ state: action }, 0) : null;
        var state = reply === null ? null : reply["state"];
        if (state === null || typeof state !== "object" || state instanceof Array)
            return null;
        return { enabled: state["enabled"] === true, name: String(state["name"]) };
    }
    Hopbox.askState = askState;
    // Has the helper run an action. False when it is gone.
    function choose(action) {
        var reply = exchange({ choose: action });
        return reply !== null && reply["started"] === true;
    }
    Hopbox.choose = choose;
    function readPlace() {
        var file = new File(Folder.userData.fsName + folderName + "bridge.json");
        if (!file.exists || !file.open("r"))
            return null;
        try {
            var place = Hopbox.readJson(file.read());
            return place !== null && typeof place === "object" && !(place instanceof Array) ? place : null;
        }
        catch (error) {
            return null;
        }
        finally {
            file.close();
        }
    }
    // Looks for a helper once. Gives the entries' names by action, or null when there is none yet.
    function connect() {
        var place = readPlace();
        if (place === null)
            return null;
        var made = new Socket();
        made.timeout = patience;
        if (!made.open("127.0.0.1:" + String(place["port"]), "UTF-8"))
            return null;
        socket = made;
        left = null;
        var welcome = exchange({ hello: version, secret: place["secret"] });
        refusal = welcome !== null && typeof welcome["refused"] === "string" ? welcome["refused"] : "";
        if (welcome === null || welcome["welcome"] !== version) {
            disconnect();
            return null;
        }
        var names = welcome["actions"];
        return names !== null && typeof names === "object" && !(names instanceof Array) ? names : {};
    }
    Hopbox.connect = connect;
    // The helper lies in a folder beside this script.
    function startHelper() {
        var name = "hopbox-bridge" + (File.fs === "Windows" ? ".exe" : "");
        var program = new File(File($.fileName).parent.fsName + "/Hopbox/" + name);
        return program.exists && program.execute();
    }
    Hopbox.startHelper = startHelper;
})(Hopbox || (Hopbox = {}));
// The two menu entries, and the idle task that serves the helper while one of them is at work.
var Hopbox;
(function (Hopbox) {
    var title = "Export to Hopbox...";
    var entries = [
        { action: 1674244, path: ["Main", "&File"], item: null },
        { action: 1674246, path: ["BookPanelPopup"], item: null },
    ];
    var busyPause = 20; // milliseconds between two idle tasks
    var startPause = 500;
    var startTries = 120;
    var triesAStart = 10;
    var task = null;
    var triesLeft = 0;
    var chosen = null;
    // Menus have names for scripts that are the same in every language, with or without the mark of the key.
    function namesOf(part) {
        var plain = part.replace("&", "");
        return ["$ID/" + part, "$ID/" + plain, plain];
    }
    function findMenu(path) {
        var found = null;
        for (var i = 0; i < path.length; i++) {
            var places = found === null ? app.menus : found.submenus;
            found = null;
            var names = namesOf(path[i]);
            for (var n = 0; n < names.length && found === null; n++) {
                var menu = places.item(names[n]);
                if (menu.isValid)
                    found = menu;
            }
            if (found === null)
                return null;
        }
        return found;
    }
    function setNames(names) {
        for (var i = 0; i < entries.length; i++) {
            var item = entries[i].item;
            var name = names[String(entries[i].action)];
            if (item !== null && typeof name === "string")
                item.properties = { title: name };
        }
    }
    function stopTask() {
        if (task !== null)
            task.remove();
        task = null;
    }
    function startTask(pause) {
        stopTask();
        task = app.idleTasks.add({ name: "Hopbox", sleep: pause });
        task.addEventListener(IdleTask.ON_IDLE, onIdle);
    }
    function lookForHelper() {
        var names = Hopbox.connect();
        if (names !== null) {
            setNames(names);
            stopTask();
            if (chosen !== null)
                runChosen(chosen);
        }
        else if (Hopbox.getRefusal() !== "" || --triesLeft <= 0) {
            stopTask();
            if (chosen !== null)
                alert(Hopbox.getRefusal() || "The helper of \"Export to Hopbox\" does not start.", "Export to Hopbox", true);
            chosen = null;
        }
        else if (triesLeft % triesAStart === 0) {
            Hopbox.startHelper(); // the last one may have been on its way out
        }
    }
    function onIdle() {
        if (!Hopbox.isConnected())
            lookForHelper();
        else if (!Hopbox.serve()) {
            stopTask();
            // A helper that died with a window open has left the application at rest: the next one wakes it.
            if (!Hopbox.isConnected())
                findHelper();
        }
    }
    function findHelper() {
        triesLeft = startTries;
        Hopbox.startHelper();
        startTask(startPause);
    }
    function runChosen(action) {
        chosen = null;
        if (Hopbox.choose(action)) {
            startTask(busyPause);
        }
        else {
            chosen = action;
            findHelper();
        }
    }
    function onInvoke(entry) {
        if (Hopbox.isConnected())
            runChosen(entry.action);
        else {
            chosen = entry.action;
            findHelper();
        }
    }
    function onDisplay(entry) {
        var state = Hopbox.isConnected() ? Hopbox.askState(entry.action) : null;
        var isThere = entry.action === entries[0].action ? Hopbox.hasFrontDocument() : app.books.length > 0;
        if (entry.item === null)
            return;
        entry.item.properties = state === null ? { enabled: isThere } : { enabled: state.enabled, title: state.name };
    }
    function addEntry(entry) {
        var menu = findMenu(entry.path);
        if (menu === null)
            return;
        var item = app.scriptMenuActions.add(title, {});
        entry.item = item;
        item.addEventListener(ScriptMenuAction.BEFORE_DISPLAY, function () {
            onDisplay(entry);
        });
        item.addEventListener(ScriptMenuAction.ON_INVOKE, function () {
            onInvoke(entry);
        });
        menu.menuItems.add(item, LocationOptions.AT_END);
    }
    function start() {
        Hopbox.removeLeftPresets();
        for (var i = 0; i < entries.length; i++)
            addEntry(entries[i]);
        app.addEventListener(Application.BEFORE_QUIT, Hopbox.disconnect);
        findHelper();
    }
    Hopbox.start = start;
})(Hopbox || (Hopbox = {}));
Hopbox.start();
