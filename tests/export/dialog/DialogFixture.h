#pragma once

#include "ExportRun.h"
#include "export/dialog/GCSPUSaveAsStamplexPDFDialog.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "hopbox/HopboxRegistry.h"
#include "tests/support/WindowDriver.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

// A dialog on the screen, over the registry and the plug-in's settings of a root of its own.
class DialogFixture : public ExportFixture
{
protected:
    static DialogOptions GetAllOptions()
    {
        DialogOptions options;
        for (const int32_t option : {0, 1, 2, 3, 4, 5})
            options[static_cast<DialogOption>(option)] = true;
        return options;
    }

    // A Hopbox with settings KEY=VALUE, blanks between them; gives its key.
    static GString Add(const char* name, const char* pdfSettings, const char* settings = "UserSettings=true")
    {
        const GString key =
            MakeHopbox(QLatin1String(name), QString::fromLatin1(settings).split(QLatin1Char(' ')));
        EXPECT_TRUE(HopboxRegistry().ChangeEntry(
            key, [&](HopboxRegistryEntry& entry) { entry.pdfSettings = QString::fromUtf8(pdfSettings); }));
        return key;
    }

    // Takes a Hopbox away from the plug-in.
    static void Withdraw(const GString& key)
    {
        EXPECT_TRUE(
            HopboxRegistry().ChangeEntry(key, [](HopboxRegistryEntry& entry) { entry.isPlugin = false; }));
    }

    // Puts any text in the place of a Hopbox's record.
    static void WriteRecord(const char* key, const QString& text)
    {
        GPrefSharedFileModule module(HopboxRegistry::GetPathName(), GEncoding::GetUTF16LittleEndian());
        module.Set("PrinterProcessorRegistry", key, text);
        module.FlushPrefs();
    }

    void Open(const DialogOptions& options = GetAllOptions())
    {
        mDialog.reset();
        mTool = std::make_unique<GCPTSaveAsTool>(party.action, options);
        mDialog = std::make_unique<GCSPUSaveAsStamplexPDFDialog>(nullptr, *mTool);
        mDialog->show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(mDialog.get()));
        ok = static_cast<QPushButton*>(FindWithText(*mDialog, "OK"));
        list = mDialog->findChild<QComboBox*>(QString(), Qt::FindDirectChildrenOnly);
        range = mDialog->findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly);
    }

    template <typename Widget = QAbstractButton>
    Widget& Find(const char* text)
    {
        return *qobject_cast<Widget*>(FindWithText(*mDialog, text));
    }

    // What the list shows, the selected one in brackets.
    QString GetList() const
    {
        QStringList texts;
        for (int index = 0; index < list->count(); ++index)
            texts.append(list->itemText(index));
        if (list->currentIndex() >= 0)
            texts[list->currentIndex()] = QStringLiteral("[%1]").arg(list->currentText());
        return texts.join(QLatin1Char(' '));
    }

    // The line above the buttons; empty when it is not there.
    QString GetMessage() const
    {
        for (const QLabel* label : mDialog->findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly))
            if (label->isVisible() && label->alignment() & Qt::AlignHCenter)
                return label->text();
        return {};
    }

    void ClickOKWithAlt()
    {
        WindowDriver::Press(Qt::Key_Alt, Qt::AltModifier);
        QTest::mouseClick(ok, Qt::LeftButton, Qt::AltModifier);
        WindowDriver::Release(Qt::Key_Alt);
    }

    ExportParty party;
    QPushButton* ok = nullptr;
    QComboBox* list = nullptr;
    QLineEdit* range = nullptr;

private:
    std::unique_ptr<GCPTSaveAsTool> mTool;

protected:
    std::unique_ptr<GCSPUSaveAsStamplexPDFDialog> mDialog;
};
