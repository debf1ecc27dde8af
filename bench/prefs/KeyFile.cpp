#include "KeyFile.h"

#include <glib.h>

#include <cstring>

struct KeyFile::Data
{
    GKeyFile* file = g_key_file_new();
    ~Data() { g_key_file_unref(file); }
};

KeyFile::KeyFile() : mData(std::make_unique<Data>()) {}

KeyFile::~KeyFile() = default;

bool KeyFile::Load(const QByteArray& path)
{
    return g_key_file_load_from_file(mData->file, path.constData(), G_KEY_FILE_NONE, nullptr) != FALSE;
}

bool KeyFile::Save(const QByteArray& path)
{
    return g_key_file_save_to_file(mData->file, path.constData(), nullptr) != FALSE;
}

void KeyFile::Set(const QByteArray& group, const QByteArray& key, const QByteArray& value)
{
    g_key_file_set_string(mData->file, group.constData(), key.constData(), value.constData());
}

size_t KeyFile::GetLength(const QByteArray& group, const QByteArray& key) const
{
    const std::unique_ptr<char, decltype(&g_free)> value(
        g_key_file_get_string(mData->file, group.constData(), key.constData(), nullptr), &g_free);
    return value ? std::strlen(value.get()) : 0;
}
