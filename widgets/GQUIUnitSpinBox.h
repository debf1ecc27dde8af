#pragma once

#include <QDoubleSpinBox>

#include <optional>

// A spin box of lengths. It holds points, shows them in the default unit (GUnitSupport) and takes any unit
// typed in: "3 mm", "1p6", "0.125in". A text is taken when Return is pressed or the box loses the focus: one
// beyond the range becomes the nearest length within it, one that is no length goes back to what was there.
// While a text beyond the range is typed, the range is shown.
//
// The box may also be blank, for a length that is not known; once it has a length, it can no longer be
// emptied.
class GQUIUnitSpinBox : public QDoubleSpinBox
{
    Q_OBJECT

public:
    // From 0 to 1440 points, at 0.
    explicit GQUIUnitSpinBox(QWidget* parent = nullptr);

    // To a millionth of a point; 0 when blank. What is being typed counts once it is taken (interpretText).
    double GetPoints() const;
    void SetPoints(double points);

    // Neither of them below 0.
    void SetRangePoints(double min, double max);
    bool IsInRange(double points) const;

    bool IsBlank() const;
    void SetBlank();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    // A new length, from the user or the program.
    void PointsChanged(double points);

protected:
    QString textFromValue(double value) const override;
    double valueFromText(const QString& text) const override;
    QValidator::State validate(QString& text, int& position) const override;
    void fixup(QString& text) const override;
    void stepBy(int steps) override;

private:
    void OnTextEdited(const QString& text);
    double GetNearest(double points) const;
    bool IsShownInRange(double points) const;
    QChar GetDecimalSign() const;
    QString GetText(double points) const;
    void DescribeRange();

    double mMinimum = 0;
};
