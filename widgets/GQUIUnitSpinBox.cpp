#include "widgets/GQUIUnitSpinBox.h"

#include "foundation/core/GUnitSupport.h"
#include "widgets/GQUILengthText.h"

#include <QFontMetrics>
#include <QLineEdit>
#include <QToolTip>

#include <cmath>

namespace
{
// The value of a blank box. The base's minimum while the box is blank, so that no text gives it.
constexpr double cBlank = -1;

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

GQUIUnitSpinBox::GQUIUnitSpinBox(QWidget* parent) : QDoubleSpinBox(parent)
{
    setDecimals(6);
    setKeyboardTracking(false);
    SetRangePoints(0, 1440);
    connect(this, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this, [this] {
        if (!IsBlank())
            emit PointsChanged(GetPoints());
    });
    connect(lineEdit(), &QLineEdit::textEdited, this, &GQUIUnitSpinBox::OnTextEdited);
}

double GQUIUnitSpinBox::GetPoints() const
{
    return IsBlank() ? 0 : value();
}

void GQUIUnitSpinBox::SetPoints(double points)
{
    setValue(GetNearest(points));
    setMinimum(mMinimum);
}

void GQUIUnitSpinBox::SetRangePoints(double min, double max)
{
    mMinimum = min;
    setRange(IsBlank() ? cBlank : min, max);
    DescribeRange();
}

bool GQUIUnitSpinBox::IsInRange(double points) const
{
    return points >= mMinimum && points <= maximum();
}

bool GQUIUnitSpinBox::IsBlank() const
{
    return value() == cBlank;
}

void GQUIUnitSpinBox::SetBlank()
{
    setMinimum(cBlank);
    setValue(cBlank);
}

QSize GQUIUnitSpinBox::sizeHint() const
{
    // The base measures the limits, which are round numbers.
    const int decimals = fontMetrics().boundingRect(QStringLiteral("0000")).width();
    return QDoubleSpinBox::sizeHint() + QSize(decimals, 0);
}

QString GQUIUnitSpinBox::textFromValue(double value) const
{
    return value == cBlank ? QString() : GetText(value);
}

double GQUIUnitSpinBox::valueFromText(const QString& text) const
{
    if (text == GetText(value()))
        return value();  // the text is rounded, the length is not
    return GQUILengthText::ToPoints(text, GUnitSupport::GetDefaultUnitCode()).value_or(value());
}

QValidator::State GQUIUnitSpinBox::validate(QString& text, int&) const
{
    switch (GQUILengthText::GetForm(text)) {
        case GQUILengthText::Form::cLength:
            return IsShownInRange(valueFromText(text)) ? QValidator::Acceptable : QValidator::Intermediate;
        case GQUILengthText::Form::cPartial:
            return text.isEmpty() && IsBlank() ? QValidator::Acceptable : QValidator::Intermediate;
        default:
            return QValidator::Invalid;
    }
}

void GQUIUnitSpinBox::fixup(QString& text) const
{
    if (GQUILengthText::GetForm(text) == GQUILengthText::Form::cLength)
        text = GetText(GetNearest(valueFromText(text)));
}

void GQUIUnitSpinBox::stepBy(int steps)
{
    const int32_t unit = GUnitSupport::GetDefaultUnitCode();
    const double step = GetStep(unit);
    const double position = GUnitSupport::FromPoints(IsBlank() ? mMinimum : value(), unit) / step;
    // On to the next whole step: 3.2 goes up to 4 and down to 3.
    constexpr double cSlack = 1e-4;
    const double next = steps > 0 ? std::floor(position + cSlack) : std::ceil(position - cSlack);
    SetPoints(GUnitSupport::ToPoints((next + steps) * step, unit));
    selectAll();
}

void GQUIUnitSpinBox::OnTextEdited(const QString& text)
{
    const bool isBeyond = GQUILengthText::GetForm(text) == GQUILengthText::Form::cLength &&
                          !IsShownInRange(valueFromText(text));
    QToolTip::showText(mapToGlobal(rect().bottomLeft()), isBeyond ? toolTip() : QString(), this);
}

double GQUIUnitSpinBox::GetNearest(double points) const
{
    return qBound(mMinimum, points, maximum());
}

// A limit's own text, which is rounded, may be a little beyond the limit.
bool GQUIUnitSpinBox::IsShownInRange(double points) const
{
    return IsInRange(points) || GetText(points) == GetText(GetNearest(points));
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

void GQUIUnitSpinBox::DescribeRange()
{
    setToolTip(tr("From %1 to %2, in any unit: 3 mm, 0.125 in, 1p6, 9 pt")
                   .arg(GetText(mMinimum), GetText(maximum())));
}
