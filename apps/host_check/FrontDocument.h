#pragma once

#include <QString>

#include <cstdint>

class WatchedHost;
struct hopbox_adaptor;

// The document in front of the host under test.
namespace FrontDocument
{
// Its file; empty where there is none.
QString GetFile(const WatchedHost& host);

// 0 or 1; another number when it can't be told.
int32_t IsSaved(const WatchedHost& host);

// What the name of its file ends in, from the first dot on.
QString GetEnding(const WatchedHost& host);

// Has the adaptor bring an unsaved document to the front whose file will be a new one in a folder, and gives
// that file's path.
QString OpenUnsaved(const hopbox_adaptor& adaptor, const QString& folder, const QString& ending);
}  // namespace FrontDocument
