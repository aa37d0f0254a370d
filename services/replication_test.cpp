#include "qorvel/services.h"
#include "tests/unit.h"

namespace {

// qorvel-props reads the version 2 record; the version 1 one is checked here.
TEST(ReplServer, Version1StopsAtItsEndAndIsTheFirstPartOfVersion2) {
    TempFile file("[server]\ndatabase=/db/source db\nlistener-minport=4000\nrepl-keep-alive=30\n");
    ReplServerPropsV2 v2;
    std::memset(&v2, 'x', sizeof v2);
    ASSERT_EQ(ReadReplServerProperties(file.path(), &v2, REPL_VERSION_1, nullptr), 0);
    EXPECT_EQ(join(v2.v1.database, v2.v1.listener_minport, v2.v1.listener_maxport),
              "/db/source db|4000|-1");
    EXPECT_EQ(v2.minimum_polling_delay, 0x7878787878787878) << "version 1 stops at its end";
    const ReplServerProps v1 = v2.v1;
    ASSERT_EQ(ReadReplServerProperties(file.path(), &v2, REPL_VERSION_2, nullptr), 0);
    EXPECT_EQ(std::memcmp(&v1, &v2.v1, sizeof v1), 0) << "both versions share the first part";
}

}  // namespace
