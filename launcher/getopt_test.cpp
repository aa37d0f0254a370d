#include "launcher/getopt.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qorvel::opt {
namespace {

// Runs a whole scan: each result as "c" or "c=arg", then "end=" and the final optind.
std::vector<std::string> scan(std::vector<std::string> words) {
    std::vector<char*> argv;
    for (std::string& w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    int argc = static_cast<int>(words.size());
    std::vector<std::string> out;
    opterr = 0;
    optind = 0;
    for (int c; (c = getopt(argc, argv.data(), kOptionString)) != -1;) {
        std::string r(1, static_cast<char>(c));
        if (c != '?' && optarg) r.append("=").append(optarg);
        out.push_back(r);
    }
    out.push_back("end=" + std::to_string(optind));
    return out;
}

// Its messages on standard error are checked through the built program (tests/cli).
TEST(Getopt, ScansOptionsTheWayTheLauncherExpects) {
    const struct {
        const char* name;
        std::vector<std::string> argv;
        std::vector<std::string> results;
    } cases[] = {
        {"no_options", {"q", "java", "Main"}, {"end=1"}},
        {"grouped_flags_attached_arg", {"q", "-dsw/tmp", "java"}, {"d", "s", "w=/tmp", "end=2"}},
        {"separate_arg", {"q", "-c", "a:b", "-d", "java"}, {"c=a:b", "d", "end=4"}},
        {"double_dash_ends_options", {"q", "-d", "--", "java", "-s"}, {"d", "end=3"}},
        {"lone_dash_is_an_empty_group", {"q", "-d", "-", "java"}, {"d", "end=3"}},
        {"dash_inside_group_ends_options", {"q", "-d-s", "-s", "java"}, {"d", "end=2"}},
        {"missing_arg_at_end", {"q", "-c"}, {"?", "end=2"}},
        {"dash_word_is_never_an_arg", {"q", "-c", "-d", "java"}, {"?", "d", "end=3"}},
        {"unknown_letter_then_rest_of_group", {"q", "-zd", "java"}, {"?", "d", "end=2"}},
        {"colon_comes_back_as_a_letter", {"q", "-:", "java"}, {":", "end=2"}},
        {"options_stop_at_first_word", {"q", "java", "-d"}, {"end=1"}},
        {"group_after_separate_arg", {"q", "-u", "a", "-ds", "x"}, {"u=a", "d", "s", "end=4"}},
        {"only_options", {"q", "-d", "-s"}, {"d", "s", "end=3"}},
    };
    for (const auto& c : cases) EXPECT_EQ(scan(c.argv), c.results) << c.name;
}

}  // namespace
}  // namespace qorvel::opt
