// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "base/filedescriptor.h"

#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdint>

namespace luma::test {

/// A listener on a free TCP port of the loopback interface that accepts connections and never sends anything.
class SilentServer final
{
public:
    SilentServer() : m_listener(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address = {};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof address;
        auto* const any = reinterpret_cast<sockaddr*>(&address);
        if (::bind(m_listener.get(), any, length) == 0 && ::listen(m_listener.get(), 16) == 0 &&
            ::getsockname(m_listener.get(), any, &length) == 0)
            m_port = ntohs(address.sin_port);
    }

    /// 0 if no port could be opened.
    [[nodiscard]] std::uint16_t port() const { return m_port; }

private:
    FileDescriptor m_listener;
    std::uint16_t m_port = 0;
};

/// A TCP port of the loopback interface that was free at the time of the call; 0 if there is none.
inline std::uint16_t freePort()
{
    return SilentServer().port();
}

/// True if something accepts connections on the port of the loopback interface.
inline bool answers(std::uint16_t port)
{
    const FileDescriptor client(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return ::connect(client.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

} // namespace luma::test
