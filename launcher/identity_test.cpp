#include "launcher/identity.h"

#include <sys/wait.h>

#include "launcher/console.h"
#include "launcher/environment.h"
#include "tests/unit.h"
#include "util/bounded_text.h"

namespace qorvel {
namespace {

// Names themselves are looked up by the identity suite against its own account files.
TEST(NameToId, NumbersBetweenBlanksUpToTheLastUsableId) {
    bounded_copy(console.outputDesc, "none");
    const struct {
        const char* text;
        unsigned id;
    } cases[] = {
        {"#1001", 1001},    {"#  42  ", 42}, {"#4294967294", 4294967294u},
        {"#4294967295", 0}, {"#-1", 0},      {"#10x1", 0},
        {"#7 7", 0},        {"#", 0},        {"no-such-name-qv", 0},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(uname2id(c.text), c.id) << c.text;
        EXPECT_EQ(gname2id(c.text), c.id) << c.text;
    }
}

TEST(QueryPid, TellsLivingFromGone) {
    EXPECT_EQ(query_PID(getpid()), getpid());
    pid_t child = fork();
    if (child == 0) _exit(0);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(query_PID(child), 0) << "a reaped child no longer exists";
}

}  // namespace
}  // namespace qorvel
