#include "foundation/ipc/GPPIPCMessage.h"

#include <QtEndian>

namespace
{
constexpr int cHeaderSize = 24;

void Append(GBuffer* bytes, uint32_t number)
{
    const uint32_t stored = qToLittleEndian(number);
    bytes->append(reinterpret_cast<const char*>(&stored), sizeof stored);
}

uint32_t GetNumber(const GBuffer& bytes, int offset)
{
    return qFromLittleEndian<uint32_t>(bytes.constData() + offset);
}
}  // namespace

GBuffer GPPIPCMessage::Encode() const
{
    GBuffer bytes;
    bytes.reserve(cHeaderSize + payload.size());
    for (const uint32_t number : {session, process, receiver, static_cast<uint32_t>(kind), flag,
                                  static_cast<uint32_t>(payload.size())})
        Append(&bytes, number);
    return bytes += payload;
}

bool GPPIPCMessage::Decode(const GBuffer& bytes, GPPIPCMessage* message)
{
    if (bytes.size() < cHeaderSize ||
        GetNumber(bytes, 20) != static_cast<uint32_t>(bytes.size() - cHeaderSize))
        return false;
    message->session = GetNumber(bytes, 0);
    message->process = GetNumber(bytes, 4);
    message->receiver = GetNumber(bytes, 8);
    message->kind = static_cast<int32_t>(GetNumber(bytes, 12));
    message->flag = GetNumber(bytes, 16);
    message->payload = bytes.mid(cHeaderSize);
    return true;
}
