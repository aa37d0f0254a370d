#include "launcher/notify.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>

#include "launcher/console.h"
#include "util/bounded_text.h"

namespace qorvel {

// The protocol is a stable interface of its own (one datagram of NAME=value
// lines to an AF_UNIX socket), a dozen lines against a library and its
// dependencies loaded into every launch. One datagram carries both lines:
// under NotifyAccess=main the manager would refuse a READY=1 sent after
// MAINPID= had made another process the main one.
void notify_ready(pid_t main) {
    const char* name = std::getenv("NOTIFY_SOCKET");
    if (!name || (name[0] != '/' && name[0] != '@')) return;
    struct sockaddr_un address {};
    address.sun_family = AF_UNIX;
    std::size_t length = std::strlen(name);
    int code = ENAMETOOLONG;
    if (length < sizeof address.sun_path) {
        bounded_copy(address.sun_path, name);
        if (address.sun_path[0] == '@') address.sun_path[0] = '\0';  // an abstract name
        char text[64];
        bounded_format(text, sizeof text, "MAINPID=%d\nREADY=1\n", static_cast<int>(main));
        auto size = static_cast<ssize_t>(std::strlen(text));
        int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        auto address_size = static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + length);
        bool sent =
            fd != -1 && sendto(fd, text, std::strlen(text), MSG_NOSIGNAL,
                               reinterpret_cast<const sockaddr*>(&address), address_size) == size;
        code = sent ? 0 : errno;
        if (fd != -1) close(fd);
    }
    if (code == 0) {
        trace("Sent READY=1 and MAINPID=%d to NOTIFY_SOCKET (%s)\n", static_cast<int>(main), name);
    } else if (verbose()) {
        outMessage(code, "Warning: readiness not sent to NOTIFY_SOCKET (%s)\n", name);
    }
}

}  // namespace qorvel
