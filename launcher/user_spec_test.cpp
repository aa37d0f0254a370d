#include "launcher/user_spec.h"

#include <gtest/gtest.h>

#include <string>

#include "launcher/settings.h"

namespace qorvel {
namespace {

struct Case {
    std::string value;
    bool valid;
    const char* user;
    const char* group;
    const char* password;
};

TEST(SplitUserSpec, FieldsAndFormatErrors) {
    const std::string long_name(50, 'n');
    const std::string longest_name(49, 'n');
    const Case cases[] = {
        {"a", true, "a", "", ""},
        {"alice:staff", true, "alice", "staff", ""},
        {"alice:staff:secret", true, "alice", "staff", "secret"},
        {"alice::secret", true, "alice", "", "secret"},
        {":staff", true, "", "staff", ""},
        {"alice:", true, "alice", "", ""},
        {"alice:staff:pa:ss", true, "alice", "staff", "pa:ss"},
        {longest_name, true, longest_name.c_str(), "", ""},
        {"", false, "", "", ""},
        {"::secret", false, "", "", ""},
        {":staff:secret", false, "", "", ""},
        {"::", false, "", "", ""},
        {long_name, false, "", "", ""},  // a 50-byte field leaves no room for its terminator
        {"alice:staff:" + long_name, false, "", "", ""},
    };
    for (const Case& c : cases) {
        char user[kIdentityFieldSize], group[kIdentityFieldSize], password[kIdentityFieldSize];
        EXPECT_EQ(split_user_spec(c.value, user, group, password), c.valid) << c.value;
        if (!c.valid) continue;
        EXPECT_STREQ(user, c.user) << c.value;
        EXPECT_STREQ(group, c.group) << c.value;
        EXPECT_STREQ(password, c.password) << c.value;
    }
}

}  // namespace
}  // namespace qorvel
