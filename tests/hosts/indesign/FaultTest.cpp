#include "SimulatedApplication.h"

#include <QThread>

// The n-th answer of the script goes wrong, for every n; either side dies there.

namespace
{
// Reports and what the export has made under the temporary folder, results aside.
QStringList GetLeft(const Workplace& workplace)
{
    QStringList left;
    for (const QString& name : ReadTree(workplace.sandbox.GetPath("Temp"_q)).keys()) {
        if (!name.endsWith(QLatin1Char('/')) && !name.endsWith("Doc.pdf"_q))
            left << name;
    }
    return left;
}

class IndesignFault : public testing::TestWithParam<const char*>
{
protected:
    IndesignFault()
    {
        qputenv("HOPBOX_BRIDGE_SECONDS", "1");
        mDocument = mWorkplace.MakeDocument("Doc.indd"_q, {"1"_q, "2"_q});
    }

    ~IndesignFault() override { qunsetenv("HOPBOX_BRIDGE_SECONDS"); }

    void Open(SimulatedApplication& application) { application.Do("open", {{"path"_q, mDocument}}); }

    // An export without a fault; gives the number of its answers.
    int Export(SimulatedApplication& application)
    {
        application.Do("break", {{"nth"_q, 0}});
        const QJsonArray events = application.Choose();
        EXPECT_EQ(mWorkplace.receiver->ReadLine().value("PrinterName"_q), "Press"_q);
        mWorkplace.TakeWindows();
        return events.last().toObject().value("answers"_q).toInt();
    }

    void Break(SimulatedApplication& application, int nth)
    {
        application.Do("break", {{"nth"_q, nth}, {"how"_q, QLatin1String(GetParam())}});
    }

    Workplace mWorkplace;
    QString mDocument;
};
}  // namespace

class IndesignAnswer : public IndesignFault
{
};

// Either the export comes to its end without an alert, or there is one alert and nothing for the receiver.
TEST_P(IndesignAnswer, EndsInATicketOrAnAlert)
{
    SimulatedApplication application(mWorkplace, {{"lateness"_q, 1300}});
    Open(application);
    const int count = Export(application);
    ASSERT_GE(count, 8);
    int failures = 0;
    for (int nth = 1; nth <= count; ++nth) {
        SCOPED_TRACE(nth);
        Break(application, nth);
        const QJsonArray events = application.Choose();
        const QStringList windows = mWorkplace.TakeWindows();
        const QJsonObject report = events.last().toObject();
        EXPECT_EQ(report.value("presets"_q), 0);
        EXPECT_EQ(report.value("documents"_q), 1);
        EXPECT_EQ(report.value("view"_q), true);
        // The first answers are for the menu entry: it may be off then, and no window comes.
        ASSERT_LE(windows.size(), 2) << windows.join(QLatin1Char('\n')).toStdString();
        if (windows.size() == 1)
            EXPECT_EQ(mWorkplace.receiver->ReadLine().value("PrinterName"_q), "Press"_q);
        else
            ++failures;
    }
    EXPECT_GE(failures, 3);
    const QStringList received = mWorkplace.GetReceived();
    EXPECT_EQ(received.size(), 1 + count - failures) << "a failed export has sent its PDF";
    EXPECT_EQ(GetLeft(mWorkplace), QStringList());
    Export(application);
}

INSTANTIATE_TEST_SUITE_P(Ways, IndesignAnswer, testing::Values("fail", "none", "type", "nonsense", "late"),
                         [](const auto& one) { return std::string(one.param); });

class IndesignDeath : public IndesignFault
{
};

TEST_P(IndesignDeath, LeavesNothingAndTheNextExportWorks)
{
    const bool isApplication = QByteArray(GetParam()) == "die";
    auto application = std::make_unique<SimulatedApplication>(mWorkplace);
    Open(*application);
    const int count = Export(*application);
    for (int nth = 1; nth <= count; ++nth) {
        SCOPED_TRACE(nth);
        Break(*application, nth);
        application->heard = {};
        application->Do("choose");
        if (isApplication) {
            ASSERT_TRUE(application->WaitForEnd());
            EXPECT_TRUE(mWorkplace.WaitForHelpersEnd()) << "the helper outlives the application";
            EXPECT_EQ(GetLeft(mWorkplace), QStringList());
            application = std::make_unique<SimulatedApplication>(mWorkplace);
            Open(*application);
        } else {
            const QJsonObject report = application->WaitForRest();
            EXPECT_EQ(report.value("presets"_q), 0);
            EXPECT_EQ(report.value("quiet"_q), false);
            EXPECT_EQ(Find(application->heard, "alert"), QJsonObject());
        }
        mWorkplace.TakeWindows();
    }
    Export(*application);
    EXPECT_EQ(GetLeft(mWorkplace), QStringList()) << "a start removes what a killed helper has left";
}

INSTANTIATE_TEST_SUITE_P(Ways, IndesignDeath, testing::Values("die", "kill"),
                         [](const auto& one) { return std::string(one.param); });

// The user closes the application while the dialog is open.
TEST(IndesignHelper, GoesWithTheApplicationAndItsOpenDialog)
{
    Workplace workplace;
    workplace.SetSteps("stay");
    SimulatedApplication application(workplace);
    application.Do("open", {{"path"_q, workplace.MakeDocument("Doc.indd"_q, {"1"_q})}});
    application.WaitForRest();
    application.Do("choose");
    while (workplace.TakeWindows().isEmpty())
        QThread::msleep(10);
    application.Do("quit");
    EXPECT_TRUE(application.WaitForEnd());
    EXPECT_TRUE(workplace.WaitForHelpersEnd());
    EXPECT_EQ(workplace.GetReceived(), QStringList());
}

TEST(IndesignHelper, MissingProgramOrModuleIsTold)
{
    Workplace workplace;
    const QString none = workplace.sandbox.GetPath("none.so"_q);
    ASSERT_TRUE(WriteFile(none, "no module"));
    const std::pair<QString, QString> cases[] = {{none, none},
                                                 {QStringLiteral(SHORT_MODULE), "it gives no reason"_q}};
    qputenv("TEST_REFUSES_ACTIONS", "1");
    for (const auto& [module, words] : cases) {
        qputenv("TEST_MODULE", module.toUtf8());
        SimulatedApplication application(workplace);
        application.Do("open", {{"path"_q, workplace.MakeDocument("Doc.indd"_q, {"1"_q})}});
        const QString alert = Find(application.Choose(), "alert").value("alert"_q).toString();
        EXPECT_TRUE(alert.contains(words) && alert.contains("can't be used"_q)) << alert.toStdString();
    }
    qunsetenv("TEST_MODULE");
    qunsetenv("TEST_REFUSES_ACTIONS");
}
