#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QGenericPlugin>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QRadioButton>
#include <QTest>
#include <QTimer>

// The user's hand in a process that is no test: Qt loads it where QT_QPA_GENERIC_PLUGINS says "hand". In each
// window that becomes modal it does what the file HAND_STEPS says, by words: "package" includes the package,
// "range=2" types a range, "stay" leaves the window open; else it presses Enter. What the windows say goes to
// the file HAND_LOG.
class Hand : public QObject
{
public:
    Hand() { startTimer(10); }

protected:
    void timerEvent(QTimerEvent* /*event*/) override
    {
        QWidget* window = QApplication::activeModalWidget();
        if (window == nullptr || !window->isActiveWindow() || window == mSeen)
            return;
        mSeen = window;
        Tell(*window);
        QFile file(qEnvironmentVariable("HAND_STEPS"));
        const QStringList steps =
            file.open(QIODevice::ReadOnly)
                ? QString::fromUtf8(file.readAll()).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                : QStringList();
        for (const QString& step : steps)
            Take(*window, step);
        if (!steps.contains(QStringLiteral("stay")))
            // Not from here: what the key starts may last, and this timer would rest until it is over.
            QTimer::singleShot(0, window, [window] { QTest::keyClick(window, Qt::Key_Return); });
    }

private:
    static void Take(QWidget& window, const QString& step)
    {
        if (step == QLatin1String("package")) {
            for (QCheckBox* box : window.findChildren<QCheckBox*>()) {
                if (box->text().remove(QLatin1Char('&')) == QLatin1String("Include File Package"))
                    box->setChecked(true);
            }
        } else if (step.startsWith(QLatin1String("range="))) {
            for (QRadioButton* button : window.findChildren<QRadioButton*>()) {
                if (button->text().remove(QLatin1Char('&')) == QLatin1String("Range:"))
                    button->click();
            }
            for (QLineEdit* line : window.findChildren<QLineEdit*>()) {
                if (line->placeholderText().contains(QLatin1String("1-5")))
                    line->setText(step.mid(6));
            }
        }
    }

    static void Tell(const QWidget& window)
    {
        QString text = window.windowTitle();
        for (const QLabel* label : window.findChildren<QLabel*>())
            text += QLatin1Char('|') + label->text();
        QFile file(qEnvironmentVariable("HAND_LOG"));
        if (file.open(QIODevice::Append))
            file.write(text.simplified().toUtf8() + '\n');
    }

    QPointer<QWidget> mSeen;
};

class HandPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "hand.json")

public:
    QObject* create(const QString& /*name*/, const QString& /*specification*/) override { return new Hand; }
};

#include "Hand.moc"
