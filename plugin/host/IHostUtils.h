#pragma once

#include "plugin/host/HostIdentifiers.h"
#include "plugin/host/HostPtr.h"
#include "plugin/host/IDocument.h"

#include <cstdint>

// Questions about what the user looks at. Host: utility interface 118846.
class ILayoutUtils : public IHostObject
{
public:
    static constexpr InterfaceID cUtilsID = HostUtilsID::cLayout;

    // The document in front. Host: the front document.
    virtual HostPtr<IDocument> QueryFrontDocument() const = 0;

protected:
    ~ILayoutUtils() = default;
};

// How a document is closed.
struct CloseFlags
{
    int32_t dialogs = 0;    // 0: the host asks nothing; a document that was changed is closed as it is
    bool mayCancel = true;  // a document that may not be closed stays open, without a failure
    bool isAtOnce = true;   // closed when the call returns, not later from the host's message loop
};

// What can be done with documents as files. Host: utility interface 351.
class IDocumentUtils : public IHostObject
{
public:
    static constexpr InterfaceID cUtilsID = HostUtilsID::cDocument;

    // Saves a document to its own file; if it was never saved, the host asks the user for a file. Zero on
    // success; it is a failure if the user cancels. Host: the save operation.
    virtual ErrorCode SaveDocument(IDocument& document) = 0;

    // The document of a file that is open already, with or without a window. Host: the search in the
    // application's list of documents, by file.
    virtual HostPtr<IDocument> FindOpenDocument(const IDFile& file) const = 0;

    // Opens a document without a window and without asking anything. Zero on success; `document` may be
    // empty even then. Host: the open operation with its dialogs off, then the document of the reference that
    // it gave.
    virtual ErrorCode OpenDocument(const IDFile& file, HostPtr<IDocument>& document) = 0;

    // Closes a document that OpenDocument opened. Host: the close operation, with the flags in the order of
    // CloseFlags: 0, true, true.
    virtual ErrorCode CloseDocument(IDocument& document, const CloseFlags& flags) = 0;

protected:
    ~IDocumentUtils() = default;
};

// A number that the host gives out for the time of a modal window; 0 is none.
using ModalToken = uint64_t;
constexpr ModalToken cNoModalToken = 0;

// The host's state while a window that is not the host's is modal: the host's menus, panels and shortcuts do
// not react. Host: utility interface 1665.
class IModalUtils : public IHostObject
{
public:
    static constexpr InterfaceID cUtilsID = HostUtilsID::cModal;

    // Host: the begin of the modal state.
    virtual ModalToken AcquireModalToken() = 0;

    // Host: the end of the modal state, with the token of its begin.
    virtual void HandBackModalToken(ModalToken token) = 0;

protected:
    ~IModalUtils() = default;
};
