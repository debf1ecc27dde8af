#include "widgets/GQUILengthAccessible.h"

#include "widgets/GQUIUnitSpinBox.h"

#include <QAccessibleWidget>
#include <QLineEdit>

#include <cmath>

namespace
{
class LengthAccessible : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit LengthAccessible(GQUIUnitSpinBox& box) : QAccessibleWidget(&box, QAccessible::SpinBox), mBox(box)
    {
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? mBox.text() : QAccessibleWidget::text(kind);
    }

    // The field in it is a part of it.
    int childCount() const override { return 0; }
    QAccessibleInterface* child(int) const override { return nullptr; }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return mBox.GetPoints() ? static_cast<QAccessibleValueInterface*>(this) : nullptr;
        if (type == QAccessible::TextInterface || type == QAccessible::EditableTextInterface)
            return QAccessible::queryAccessibleInterface(mBox.GetTextField())->interface_cast(type);
        return QAccessibleWidget::interface_cast(type);
    }

    // In points.
    QVariant currentValue() const override { return mBox.GetPoints().value_or(0); }
    void setCurrentValue(const QVariant& value) override
    {
        const double points = value.toDouble();
        if (mBox.isEnabled() && !std::isnan(points))
            mBox.SetPoints(qBound(mBox.GetMinimumPoints(), points, mBox.GetMaximumPoints()));
    }
    QVariant minimumValue() const override { return mBox.GetMinimumPoints(); }
    QVariant maximumValue() const override { return mBox.GetMaximumPoints(); }
    QVariant minimumStepSize() const override { return {}; }

private:
    GQUIUnitSpinBox& mBox;
};

QAccessibleInterface* MakeAccessible(const QString&, QObject* object)
{
    auto* box = qobject_cast<GQUIUnitSpinBox*>(object);
    return box != nullptr ? new LengthAccessible(*box) : nullptr;
}
}  // namespace

void InstallGQUILengthAccessible()
{
    QAccessible::installFactory(MakeAccessible);  // Qt keeps each once
}
