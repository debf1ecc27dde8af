#pragma once

#include <QByteArray>

#include <memory>

// GLib's GKeyFile behind a face without GLib's headers, whose names meet ours.
class KeyFile
{
public:
    KeyFile();
    ~KeyFile();
    KeyFile(const KeyFile&) = delete;
    KeyFile& operator=(const KeyFile&) = delete;

    bool Load(const QByteArray& path);
    bool Save(const QByteArray& path);
    void Set(const QByteArray& group, const QByteArray& key, const QByteArray& value);

    // Gets the value and gives its length.
    size_t GetLength(const QByteArray& group, const QByteArray& key) const;

private:
    struct Data;
    std::unique_ptr<Data> mData;
};
