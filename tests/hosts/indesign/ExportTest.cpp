#include "SimulatedApplication.h"

#include <QDir>

// From a choice in the simulated application's menu to a ticket at a real receiver: the compiled script, the
// helper, the plug-in.

namespace
{
// What every export leaves as it was.
void ExpectNothingLeft(const QJsonArray& events, int documents)
{
    const QJsonObject report = events.last().toObject();
    EXPECT_EQ(report.value("presets"_q), 0);
    EXPECT_EQ(report.value("quiet"_q), false);
    EXPECT_EQ(report.value("range"_q), "ALL_PAGES"_q);
    EXPECT_EQ(report.value("view"_q), true);
    EXPECT_EQ(report.value("documents"_q), documents);
    EXPECT_EQ(Find(events, "dialog"), QJsonObject());
    EXPECT_EQ(Find(events, "alert"), QJsonObject());
}

QJsonArray ToArray(const QStringList& texts)
{
    return QJsonArray::fromStringList(texts);
}
}  // namespace

TEST(IndesignExport, PagesAsTheDocumentBearsThem)
{
    Workplace workplace;
    const QStringList pages{"i"_q, "ii"_q, "1"_q, "2"_q, "A-1"_q};
    SimulatedApplication application(workplace);
    application.Do("open", {{"path"_q, workplace.MakeDocument("Doc.indd"_q, pages)}});
    const struct
    {
        const char* steps;
        QStringList exported;
    } cCases[] = {{"", pages},
                  {"range=2", {"2"_q}},
                  {"range=3", {"1"_q}},  // no page bears it: the third
                  {"range=1-2", {"1"_q, "2"_q}},
                  {"range=2,1,2", {"2"_q, "1"_q, "2"_q}}};
    for (const auto& one : cCases) {
        SCOPED_TRACE(one.steps);
        workplace.SetSteps(one.steps);
        const QJsonArray events = application.Choose();
        const QJsonObject exported = Find(events, "exported");
        EXPECT_EQ(exported.value("pages"_q), ToArray(one.exported));
        EXPECT_EQ(exported.value("view"_q), false) << "no viewer is opened";
        ExpectNothingLeft(events, 1);
        const QJsonObject ticket = workplace.receiver->ReadLine();
        EXPECT_EQ(ticket.value("PrinterName"_q), "Press"_q);
        EXPECT_TRUE(ReadFile(ticket.value("saved"_q).toString()).startsWith("%PDF-1.4"));
    }
}

TEST(IndesignExport, PackageWithItsSwitchesAndReport)
{
    Workplace workplace;
    ASSERT_TRUE(WriteFile(workplace.sandbox.GetPath("art/logo.tif"_q), "logo"));
    const QStringList links{workplace.sandbox.GetPath("art/logo.tif"_q),
                            workplace.sandbox.GetPath("art/gone.tif"_q)};
    SimulatedApplication application(workplace);
    application.Do("open", {{"path"_q, workplace.MakeDocument("Doc.indd"_q, {"1"_q}, links)}});
    workplace.SetSteps("package");
    const QJsonArray events = application.Choose();
    const QJsonObject packaged = Find(events, "packaged");
    const QString folder = packaged.value("packaged"_q).toString();
    EXPECT_EQ(packaged, (QJsonObject{{"packaged"_q, folder},
                                     {"fonts"_q, true},
                                     {"links"_q, true},
                                     {"profiles"_q, true},
                                     {"update"_q, false},
                                     {"hidden"_q, false},
                                     {"ignore"_q, true},
                                     {"report"_q, false},
                                     {"idml"_q, false},
                                     {"pdf"_q, false},
                                     {"style"_q, QString()},
                                     {"hyphenation"_q, false}}));
    const QMap<QString, QByteArray> tree = ReadTree(folder);
    EXPECT_EQ(tree.value("Links/logo.tif"_q), "logo");
    EXPECT_TRUE(tree.contains("Doc.indd"_q));
    EXPECT_EQ(tree.value("Package Report.txt"_q),
              "Doc.indd\n\nFonts:\nGaramond\n\nLinks:\nlogo.tif\ngone.tif (missing)\n");
    EXPECT_TRUE(workplace.receiver->ReadLine().value("JobPath"_q).toString().endsWith("Doc.pdf"_q));
    EXPECT_TRUE(workplace.receiver->ReadLine().value("JobPath"_q).toString().contains("isinddpkg"_q));
    ExpectNothingLeft(events, 1);
}

TEST(IndesignExport, BookWithItsPackage)
{
    Workplace workplace;
    const QString open = workplace.MakeDocument("One.indd"_q, {"1"_q, "2"_q});
    const QString closed = workplace.MakeDocument("Two.indd"_q, {"3"_q});
    SimulatedApplication application(workplace);
    application.Do("open", {{"path"_q, open}});
    application.Do("book", {{"path"_q, workplace.MakeBook("All.indb"_q, {open, closed})}});
    workplace.SetSteps("package");
    const QJsonArray events = application.Choose("book");
    EXPECT_EQ(Find(events, "exported").value("pages"_q), ToArray({"1"_q, "2"_q, "3"_q}));
    EXPECT_EQ(Find(events, "closed").value("closed"_q), "Two.indd"_q) << "what the user had open stays open";
    EXPECT_EQ(Find(events, "saved").value("saved"_q), workplace.sandbox.GetPath("All.indb"_q));
    ExpectNothingLeft(events, 1);
    EXPECT_TRUE(workplace.receiver->ReadLine().value("JobPath"_q).toString().endsWith("All.pdf"_q));
    const QMap<QString, QByteArray> tree = ReadTree(Find(events, "packaged").value("packaged"_q).toString());
    EXPECT_TRUE(tree.contains("One.indd"_q) && tree.contains("Two.indd"_q));
}

TEST(IndesignExport, DocumentIsSavedFirst)
{
    Workplace workplace;
    const QString file = workplace.MakeDocument("Doc.indd"_q, {"1"_q});
    SimulatedApplication application(workplace, {{"saveAs"_q, workplace.sandbox.GetPath("New.indd"_q)}});
    application.Do("open", {{"path"_q, file}});
    application.Do("change");
    EXPECT_EQ(Find(application.Choose(), "saved").value("saved"_q), file);
    application.Do("new");
    const QJsonArray events = application.Choose();
    EXPECT_EQ(Find(events, "asked").value("asked"_q), "file"_q);
    EXPECT_TRUE(Find(events, "exported").value("exported"_q).toString().endsWith("/Press/New.pdf"_q));
}

// What the application or the user refuses: the alert that says so, and nothing for the receiver.
TEST(IndesignExport, FailuresTellWhy)
{
    const struct
    {
        const char* jobOptions;
        QJsonObject setting;
        const char* fontStatus;
        bool isSaved;
        const char* alert;  // a part of it; null for none
    } cCases[] = {
        {"<< /CheckCompliance [/PDFA1B:2005] >>", {}, "INSTALLED", true, "Unable to read job options"},
        {"<< >>", {}, "NOT_AVAILABLE", true, "Garamond"},
        {"<< >>", {}, "SUBSTITUTED", true, "Garamond"},
        {"<< >>", {{"cancelled"_q, true}}, "INSTALLED", true, nullptr},
        {"<< >>", {{"cannotSave"_q, true}}, "INSTALLED", false, "save"},
    };
    for (const auto& one : cCases) {
        SCOPED_TRACE(testing::Message() << one.jobOptions << one.fontStatus << one.isSaved);
        Workplace workplace(QByteArray(one.jobOptions) + " setdistillerparams\n");
        SimulatedApplication application(workplace, one.setting);
        const QString file = workplace.MakeDocument("Doc.indd"_q, {"1"_q}, {}, QLatin1String(one.fontStatus));
        application.Do("open", {{"path"_q, file}});
        if (!one.isSaved)
            application.Do("change");
        ExpectNothingLeft(application.Choose(), 1);
        const QStringList windows = workplace.TakeWindows();
        EXPECT_EQ(windows.size(), one.alert == nullptr ? 1 : 2)
            << windows.join(QLatin1Char('\n')).toStdString();
        EXPECT_TRUE(one.alert == nullptr || windows.last().contains(QLatin1String(one.alert)))
            << windows.last().toStdString();
        EXPECT_EQ(workplace.GetReceived(), QStringList());
    }
}

TEST(IndesignExport, EntriesAreOffWithoutADocumentOrBook)
{
    Workplace workplace;
    SimulatedApplication application(workplace);
    application.WaitForRest();
    const auto look = [&](const char* menu) {
        application.Do("look", {{"menu"_q, QLatin1String(menu)}});
        return application.Hear("state").value("state"_q).toObject();
    };
    EXPECT_EQ(look("file"), (QJsonObject{{"enabled"_q, false}, {"title"_q, "Export to Hopbox..."_q}}));
    const QString file = workplace.MakeDocument("One.indd"_q, {"1"_q});
    application.Do("open", {{"path"_q, file}});
    application.Do("book", {{"path"_q, workplace.MakeBook("None.indb"_q, {})}});
    EXPECT_EQ(look("file").value("enabled"_q), true);
    EXPECT_EQ(look("book").value("enabled"_q), false) << "a book of no documents";
    application.Do("book", {{"path"_q, workplace.MakeBook("All.indb"_q, {file})}});
    EXPECT_EQ(look("book").value("enabled"_q), true);
}

// A module of an earlier form has no function for it.
TEST(IndesignExport, ChoiceThatTheModuleDoesNotKnowDoesNothing)
{
    qputenv("TEST_MODULE", SHORT_MODULE);
    Workplace workplace;
    SimulatedApplication application(workplace);
    application.Do("open", {{"path"_q, workplace.MakeDocument("Doc.indd"_q, {"1"_q})}});
    application.WaitForRest();
    const QJsonObject helper = workplace.ReadPlace();
    EXPECT_EQ(Find(application.Choose(), "state").value("state"_q).toObject().value("enabled"_q), true);
    EXPECT_EQ(workplace.ReadPlace(), helper) << "it is another one";
    EXPECT_EQ(workplace.TakeWindows(), QStringList());
    qunsetenv("TEST_MODULE");
}
