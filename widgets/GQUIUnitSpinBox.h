#pragma once

#include <QAbstractSpinBox>

#include <optional>

// A spin box for a length, or for no length: with an empty field, something else decides about the length. It
// holds points, shows them in the default unit (GUnitSupport) and accepts any unit: "3 mm", "1p6", "0.125in".
//
// As soon as the text is a length within the range, it is the field's length. An empty text means no length.
// Any other text stays as the user left it, and IsAcceptable is false. Only a length beyond the range is
// replaced by the nearest one within it, when the user presses Return or leaves the field; a tip then shows
// the range. After such a correction, Return does not leave the field.
class GQUIUnitSpinBox : public QAbstractSpinBox
{
    Q_OBJECT

public:
    // From 0 to 1440 points; empty.
    explicit GQUIUnitSpinBox(QWidget* parent = nullptr);

    // Exact, although the text is rounded; empty for no length. While the text is not acceptable, this is the
    // last acceptable length.
    std::optional<double> GetPoints() const { return mPoints; }

    // Any length; a length beyond the range stays until another one is typed.
    void SetPoints(std::optional<double> points);

    // Neither of them may be below 0.
    void SetRangePoints(double min, double max);
    double GetMinimumPoints() const { return mMinimum; }
    double GetMaximumPoints() const { return mMaximum; }

    // Where the text is typed.
    QLineEdit* GetTextField() const { return lineEdit(); }

    // What an empty field means: the text of the context menu's entry that empties the field.
    void SetTextOfNothing(const QString& text) { mTextOfNothing = text; }

    // "0 mm to 25.4 mm", and with the units that may be typed.
    QString GetRangeText() const;
    QString GetRangeTip() const;

    // A length in the default unit, as the field shows it.
    QString GetText(double points) const;

    // Whether the text is empty or a length that the field takes.
    bool IsAcceptable() const { return mIsAcceptable; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    // The length has changed, or the text has become acceptable or not acceptable.
    void Changed();
    // A length beyond the range was replaced by the nearest one.
    void Corrected();

protected:
    QValidator::State validate(QString& text, int& position) const override;
    void stepBy(int steps) override;
    StepEnabled stepEnabled() const override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    void OnTextChanged(const QString& text);
    void ShowPoints();
    [[nodiscard]] bool ReadText();
    void ShowRange();
    double GetNearest(double points) const;
    bool IsShownInRange(double points) const;
    QChar GetDecimalSign() const;

    QString mTextOfNothing;
    double mMinimum = 0;
    double mMaximum = 1440;
    std::optional<double> mPoints;
    bool mIsAcceptable = true;
    std::pair<std::optional<double>, bool> mTold{std::nullopt, true};  // by Changed
};
