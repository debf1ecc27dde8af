#include "apps/hopboxctl/ZipOutput.h"

#include "foundation/cli/CliConsole.h"
#include "foundation/cli/CliStop.h"

namespace
{
constexpr int cBarWidth = 40;
constexpr double cMegabyte = 1e6;
}  // namespace

QString makePrintable(QString name)
{
    for (QChar& character : name) {
        if (!character.isPrint())
            character = QChar::ReplacementCharacter;
    }
    return name;
}

ProgressBar::ProgressBar() : mIsSeen(CliConsole::IsErrorTerminal())
{
    mClock.start();
}

ProgressBar::~ProgressBar()
{
    leave();
}

void ProgressBar::leave()
{
    if (mPercent >= 0)
        CliConsole::PrintNote(QStringLiteral("\n"));
    mPercent = -1;
}

bool ProgressBar::show(qint64 done, qint64 total)
{
    const int percent = total > 0 ? static_cast<int>(done * 100.0 / total) : 100;
    if (mIsSeen && percent != mPercent) {
        mPercent = percent;
        const QString bar = QString(percent * cBarWidth / 100, QLatin1Char('#')).leftJustified(cBarWidth);
        const double rate = done / cMegabyte / qMax(0.001, mClock.elapsed() / 1000.0);
        CliConsole::PrintNote(QStringLiteral("\r[%1] %2 %  %3 MB/s ")
                                  .arg(bar, QString::number(percent).rightJustified(3),
                                       QString::number(rate, 'f', 1).rightJustified(7)));
    }
    return !CliStop::IsAskedFor();
}
