#include "widgets/GQUIUnitSpinBox.h"

#include "foundation/core/GUnitSupport.h"
#include "widgets/GQUILengthAccessible.h"
#include "widgets/GQUILengthText.h"

#include <QContextMenuEvent>
#include <QFocusEvent>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QTimer>
#include <QToolTip>

#include <cmath>

namespace
{
// One step of the arrows, in the unit.
double GetStep(int32_t unitCode)
{
    switch (unitCode) {
        case GUnitSupport::cPicas:
            return 1.0 / 12;
        case GUnitSupport::cInches:
            return 1.0 / 16;
        case GUnitSupport::cCentimetres:
            return 0.1;
        default:
            return 1;
    }
}
}  // namespace

GQUIUnitSpinBox::GQUIUnitSpinBox(QWidget* parent) : QAbstractSpinBox(parent)
{
    lineEdit()->setObjectName(
        QString());  // Qt hides the text from screen readers under the name that it gave
    InstallGQUILengthAccessible();
    connect(lineEdit(), &QLineEdit::textChanged, this, &GQUIUnitSpinBox::OnTextChanged);
    setToolTip(GetRangeTip());
}

void GQUIUnitSpinBox::SetPoints(std::optional<double> points)
{
    mPoints = points;
    ShowPoints();
}

void GQUIUnitSpinBox::SetRangePoints(double min, double max)
{
    mMinimum = min;
    mMaximum = max;
    setToolTip(GetRangeTip());
}

QString GQUIUnitSpinBox::GetRangeText() const
{
    return tr("%1 to %2").arg(GetText(mMinimum), GetText(mMaximum));
}

QString GQUIUnitSpinBox::GetRangeTip() const
{
    return tr("%1, in any unit: 3 mm, 0.125 in, 1p6, 9 pt").arg(GetRangeText());
}

QSize GQUIUnitSpinBox::sizeHint() const
{
    const int text = fontMetrics().horizontalAdvance(GetText(mMaximum) + QStringLiteral(".0000"));
    return QAbstractSpinBox::sizeHint() + QSize(text, 0);
}

// Whatever lengths are made of may be typed in any order, so that no way to a length is barred.
QValidator::State GQUIUnitSpinBox::validate(QString& text, int&) const
{
    return GQUILengthText::HasOnlyItsCharacters(text) ? QValidator::Acceptable : QValidator::Invalid;
}

void GQUIUnitSpinBox::stepBy(int steps)
{
    const int32_t unit = GUnitSupport::GetDefaultUnitCode();
    const double step = GetStep(unit);
    const double position = GUnitSupport::FromPoints(mPoints.value_or(mMinimum), unit) / step;
    // On to the next whole step: 3.2 goes up to 4 and down to 3.
    constexpr double cSlack = 1e-4;
    const double next = steps > 0 ? std::floor(position + cSlack) : std::ceil(position - cSlack);
    SetPoints(GetNearest(GUnitSupport::ToPoints((next + steps) * step, unit)));
    selectAll();
}

QAbstractSpinBox::StepEnabled GQUIUnitSpinBox::stepEnabled() const
{
    return StepUpEnabled | StepDownEnabled;
}

void GQUIUnitSpinBox::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !ReadText())
        selectAll();
    else
        QAbstractSpinBox::keyPressEvent(event);
}

void GQUIUnitSpinBox::focusOutEvent(QFocusEvent* event)
{
    QAbstractSpinBox::focusOutEvent(event);
    // The user comes back from a menu or another window.
    const bool isLeft = event->reason() != Qt::PopupFocusReason &&
                        (event->reason() != Qt::ActiveWindowFocusReason || isActiveWindow());
    if (isLeft)
        static_cast<void>(ReadText());  // what is wrong with it is shown
}

// A wheel turned to scroll what is around the field changes nothing.
void GQUIUnitSpinBox::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QAbstractSpinBox::wheelEvent(event);
    else
        event->ignore();
}

void GQUIUnitSpinBox::contextMenuEvent(QContextMenuEvent* event)
{
    QMenu* menu = lineEdit()->createStandardContextMenu();
    menu->setAttribute(Qt::WA_DeleteOnClose);
    if (!mTextOfNothing.isEmpty()) {
        menu->addSeparator();
        menu->addAction(mTextOfNothing, this, [this] { SetPoints({}); });
    }
    menu->popup(event->globalPos());
}

void GQUIUnitSpinBox::OnTextChanged(const QString& text)
{
    mIsAcceptable = true;
    if (text.trimmed().isEmpty()) {
        mPoints.reset();
    } else if (!mPoints || text != GetText(*mPoints)) {  // the text is rounded, the length is not
        const auto points = GQUILengthText::ToPoints(text, GUnitSupport::GetDefaultUnitCode());
        mIsAcceptable = points && IsShownInRange(*points);
        if (mIsAcceptable)
            mPoints = GetNearest(*points);
    }
    if (const std::pair state(mPoints, mIsAcceptable); state != mTold) {
        mTold = state;
        emit Changed();
    }
}

void GQUIUnitSpinBox::ShowPoints()
{
    lineEdit()->setText(mPoints ? GetText(*mPoints) : QString());
    OnTextChanged(lineEdit()->text());  // the same text may stand for another length now
}

// False when the text was no acceptable one; a length beyond the range is so no longer.
bool GQUIUnitSpinBox::ReadText()
{
    if (mIsAcceptable) {
        ShowPoints();
        return true;
    }
    const auto points = GQUILengthText::ToPoints(lineEdit()->text(), GUnitSupport::GetDefaultUnitCode());
    if (points) {
        SetPoints(GetNearest(*points));
        emit Corrected();
    }
    // What takes the focus now would close the tip.
    QTimer::singleShot(0, this, &GQUIUnitSpinBox::ShowRange);
    return false;
}

void GQUIUnitSpinBox::ShowRange()
{
    if (isVisible())
        QToolTip::showText(mapToGlobal(rect().bottomLeft()), GetRangeTip(), this);
}

double GQUIUnitSpinBox::GetNearest(double points) const
{
    return qBound(mMinimum, points, mMaximum);
}

// A limit's own text, which is rounded, may be a little beyond the limit.
bool GQUIUnitSpinBox::IsShownInRange(double points) const
{
    const double nearest = GetNearest(points);
    return points == nearest || GetText(points) == GetText(nearest);
}

QChar GQUIUnitSpinBox::GetDecimalSign() const
{
    const QChar comma = QLatin1Char(',');
    return locale().decimalPoint() == comma ? comma : QLatin1Char('.');
}

QString GQUIUnitSpinBox::GetText(double points) const
{
    return GQUILengthText::FromPoints(points, GUnitSupport::GetDefaultUnitCode(), GetDecimalSign());
}
