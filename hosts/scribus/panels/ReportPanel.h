#pragma once

#include <QCoreApplication>
#include <QJsonObject>
#include <QWidget>

class QLabel;
class QTreeWidget;
class ScribusHost;

// What became of the last export: where it went or why it failed, and each setting of the job options that
// was not honoured as it stands. It asks nothing and waits for nobody.
class ReportPanel : public QWidget
{
    Q_DECLARE_TR_FUNCTIONS(ReportPanel)

public:
    explicit ReportPanel(QWidget* parent);
    ~ReportPanel() override;

    // Shows what the host has done since it had made so many exports. False when there is no news: nothing
    // was exported and nothing failed, or the user cancelled, who knows it.
    [[nodiscard]] bool ShowNews(const ScribusHost& host, int exportsBefore);

private:
    void ShowExport(const QString& pdf, const QJsonObject& report);
    void ShowFailure(const QString& reason);
    static QString GetAnswerText(const QString& answer);

    QLabel* mHeading;
    QTreeWidget* mRows;
};
