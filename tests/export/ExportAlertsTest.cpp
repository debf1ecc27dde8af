#include "ExportFailuresFixture.h"
#include "hopbox/HopboxRegistry.h"

using Op = HostOperation;

TEST_F(ExportFailuresTest, EachOtherFailureHasItsAlertAndEndsTheExport)
{
    using Prepare = std::function<void(ExportParty&)>;
    struct Case
    {
        const char* name;
        ExportKind kind;
        Prepare prepare;
        QStringList alerts;
        const char* range = nullptr;
    };
    constexpr ExportKind document = ExportKind::Document;
    constexpr ExportKind book = ExportKind::Book;
    const auto framed = [](const char* text) { return QStringList{MakeFramedAlert(text)}; };
    const auto none = [](ExportParty&) {};
    const auto miss = [](const QStringList& fonts, size_t first, size_t last) -> Prepare {
        return [=](ExportParty& party) {
            for (size_t at = first; at <= last; ++at)
                party.host.documents[at].missingFonts = fonts;
        };
    };
    const auto cancel = [](std::optional<Op> failure) -> Prepare {
        return [failure](ExportParty& party) {
            party.host.onRun = [&party] { party.host.CancelByUser(); };
            if (failure)
                party.host.Make(*failure, HostAnswer::Fails);
        };
    };
    const auto list = [](const QStringList& names) -> Prepare {
        return [names](ExportParty& party) {
            QStringList& paths = party.host.books.front().documentPaths;
            paths = names;
            paths.replaceInStrings("*"_q, party.host.documents.at(1).path);
        };
    };
    // What a command has made, spoilt before it says success.
    const auto spoil = [](const char* name, const std::function<void(const QString&)>& change) -> Prepare {
        return [=](ExportParty& party) {
            party.host.onMade = [=](const QString& path) {
                if (!path.endsWith(QLatin1String(name)))
                    return;
                QFileInfo(path).isDir() ? QDir(path).removeRecursively() : QFile::remove(path);
                change(path);
            };
        };
    };
    const auto leaveNothing = [](const QString&) {};
    const auto makeFolder = [](const QString& path) { QDir().mkpath(path); };
    const auto write = [](const QByteArray& content) {
        return [content](const QString& path) { WriteFile(path, content); };
    };
    const QString elsewhere = GetSandbox().GetPath("Elsewhere"_q);
    QDir().mkpath(elsewhere);
    WriteFile(elsewhere + "/a.pdf"_q, "%PDF-1.4");
    const auto link = [](const QString& target) {
        return [target](const QString& path) { QFile::link(target, path); };
    };
    const QStringList noSetting = {MakeAlert("Unable to retrieve PDF setting: Press"_q)};
    const QStringList taken = {MakeAlert(cNobodyTakesIt)};
    const QString archive = HopboxRegistry::GetSettingsFolder()
                                .GetChild(QString::number(qHash("Press"_q)) + "/Project.hopbox"_q)
                                .GetNativePath();
    const Case cases[] = {
        {"a range outside the document", document, none, framed(cNoPages), "1-2,4"},
        {"a range that is none", document, none, framed(cNoPages), ""},
        {"no pages", document, [](ExportParty& party) { party.host.documents.front().pageCount = 0; },
         framed(cNoPages)},
        {"one font", document, miss("Arial"_list, 0, 0),
         framed("Font is Missing! Correct the following font and try again:\n    1. Arial\n")},
        {"three fonts", document, miss("Arial|%1|Times"_list, 0, 0),
         framed("Fonts are Missing! Correct the following fonts and try again:\n    1. Arial\n"
                "    2. %1\n    3. Times\n")},
        {"no document", document, [](ExportParty& party) { party.host.documents.clear(); },
         framed(cNoDocument)},
        {"a font in a book", book, miss("Arial"_list, 2, 2),
         framed("Font is Missing! Correct the following font and try again:\nc.indd : \n    1. Arial\n")},
        {"two fonts in a book", book, miss("Arial|Times"_list, 2, 2),
         framed("Fonts are Missing! Correct the following fonts and try again:\nc.indd : \n    1. Arial\n"
                "    2. Times\n")},
        {"a font in each of two documents", book, miss("Arial"_list, 1, 2),
         framed("Fonts are Missing! Correct the following fonts and try again:\nb.indd : \n    1. Arial\n"
                "\nc.indd : \n    1. Arial\n")},
        {"a document that is not there", book, list("*|none.indd"_list), framed(cNotOpened)},
        {"a document listed twice", book, list("*|*"_list), taken},
        {"an empty book", book, list({}), taken},
        {"no book", book, [](ExportParty& party) { party.host.books.clear(); }, framed(cInvalidBook)},
        {"cancelled", document, cancel(Op::RunPDFExport), {}},
        {"a package cancelled", document, cancel(Op::ExecutePackage), {}},
        {"a book cancelled", book, cancel(Op::RunBookExport), {}},
        {"cancelled too late", document, cancel(std::nullopt), taken},
        {"no PDF", document, spoil(".pdf", leaveNothing), framed(cFailed)},
        {"an empty PDF", document, spoil(".pdf", write("")), framed(cFailed)},
        {"another file", document, spoil(".pdf", write("%!PS-Adobe-3.0 PDF")), framed(cFailed)},
        {"a folder for a PDF", document, spoil(".pdf", makeFolder), framed(cFailed)},
        {"a link for a PDF", document, spoil(".pdf", link(elsewhere + "/a.pdf"_q)), framed(cFailed)},
        {"no PDF of a book", book, spoil(".pdf", leaveNothing), framed(cNoCommand)},
        {"no package", document, spoil(" Folder", leaveNothing), framed(cPackageFailed)},
        {"an empty package", document, spoil(" Folder", makeFolder), framed(cPackageFailed)},
        {"a package of a hidden file", document,
         spoil(" Folder", [](const QString& path) { WriteFile(path + "/.a"_q, "a"); }), taken},
        {"a file for a package", document, spoil(" Folder", write("zip")), framed(cPackageFailed)},
        {"a link for a package", document, spoil(" Folder", link(elsewhere)), framed(cPackageFailed)},
        {"an empty package of a book", book, spoil(" Folder", makeFolder), framed(cPackageFailed)},
        {"an action that is not active", document, [](ExportParty& party) { party.action.SetActive(false); },
         framed(cFailed)},
        {"no archive", document, [&](ExportParty&) { QFile::remove(archive); }, noSetting},
        {"an archive that is none", document, [&](ExportParty&) { WriteFile(archive, "zip"); }, noSetting},
        {"no entry",
         document,
         [&](ExportParty&) { EXPECT_TRUE(HopboxRegistry().RemoveEntry(key)); },
         {MakeAlert("Unable to retrieve PDF setting: "_q + key)}}};
    for (const Case& row : cases) {
        SCOPED_TRACE(row.name);
        GFileSystemBase::DropFolder(GetTemporary());
        ExportParty party(row.kind);
        row.prepare(party);
        party.Export(key, [&](GCPTSaveAsTool& tool) {
            if (row.range != nullptr)
                tool.SetPageRange(QString::fromLatin1(row.range));
        });
        EXPECT_EQ(party.alerts, row.alerts);
        EXPECT_EQ(!party.action.GetPackagePath().IsEmpty(), row.alerts == taken);
        CheckWhatIsLeft(party);
        if (row.kind == book)
            CheckDocumentsAreAsTheyWere(party);
    }
}
