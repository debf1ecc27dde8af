#include "hosts/scribus/panels/ReportPanel.h"

#include "hosts/scribus/host/ScribusHost.h"

#include <QHeaderView>
#include <QJsonArray>
#include <QLabel>
#include <QTreeWidget>
#include <QVBoxLayout>

QString ReportPanel::GetAnswerText(const QString& answer)
{
    static const char* const cAnswers[] = {QT_TR_NOOP("approximated"), QT_TR_NOOP("not possible"),
                                           QT_TR_NOOP("unknown")};
    for (const char* known : cAnswers) {
        if (answer == QLatin1String(known))
            return tr(known);
    }
    return answer;
}

ReportPanel::ReportPanel(QWidget* parent)
    : QWidget(parent), mHeading(new QLabel(this)), mRows(new QTreeWidget(this))
{
    mHeading->setTextFormat(Qt::PlainText);
    mHeading->setWordWrap(true);
    mHeading->setTextInteractionFlags(Qt::TextSelectableByMouse);
    mRows->setHeaderLabels({tr("Setting"), tr("Asked for"), tr("Answer"), tr("What was done")});
    mRows->setRootIsDecorated(false);
    mRows->setWordWrap(true);
    mRows->header()->setSectionResizeMode(QHeaderView::Interactive);
    mRows->header()->resizeSection(0, 220);
    mRows->header()->resizeSection(1, 160);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(mHeading);
    layout->addWidget(mRows, 1);
}

ReportPanel::~ReportPanel() = default;

bool ReportPanel::ShowNews(const ScribusHost& host, int exportsBefore)
{
    const QString& failure = host.GetLastFailure();
    if (failure == GResult::Cancellation().GetReason())
        return false;
    if (!failure.isEmpty())
        ShowFailure(failure);
    else if (host.GetExportCount() != exportsBefore)
        ShowExport(host.GetLastPDF(), host.GetLastReport());
    else
        return false;
    return true;
}

void ReportPanel::ShowExport(const QString& pdf, const QJsonObject& report)
{
    const QJsonArray settings = report.value(QLatin1String("settings")).toArray();
    const QJsonArray notes = report.value(QLatin1String("notes")).toArray();
    mRows->clear();
    for (const QJsonValue& setting : settings) {
        const QStringList texts{setting[QLatin1String("key")].toString(),
                                setting[QLatin1String("asked")].toString(),
                                GetAnswerText(setting[QLatin1String("answer")].toString()),
                                setting[QLatin1String("note")].toString()};
        auto* item = new QTreeWidgetItem(mRows, texts);
        for (int column = 0; column < texts.size(); ++column)
            item->setToolTip(column, texts[column]);
    }
    for (const QJsonValue& note : notes) {
        auto* item = new QTreeWidgetItem(mRows, {note.toString()});
        item->setToolTip(0, note.toString());
        item->setFirstColumnSpanned(true);
    }
    mRows->setVisible(mRows->topLevelItemCount() > 0);
    const QString count = settings.isEmpty()
                              ? tr("All settings of the job options were honoured.")
                              : tr("Settings that were not honoured exactly: %1").arg(settings.size());
    mHeading->setText(tr("Exported to %1").arg(pdf) + QLatin1Char('\n') + count);
}

void ReportPanel::ShowFailure(const QString& reason)
{
    mRows->clear();
    mRows->hide();
    mHeading->setText(tr("The export failed: %1").arg(reason));
}
