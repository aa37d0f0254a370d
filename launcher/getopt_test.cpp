#include "launcher/getopt.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace qorvel::opt {
namespace {

// Runs a whole scan; records each result as "c" or "c=arg" and the final optind.
struct Scan {
    std::vector<std::string> results;
    int end_index;
};

Scan scan(std::vector<std::string> words) {
    std::vector<char*> argv;
    for (std::string& w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    int argc = static_cast<int>(words.size());
    Scan out;
    opterr = 0;
    optind = 0;
    for (int c; (c = getopt(argc, argv.data(), kOptionString)) != -1;) {
        std::string r(1, static_cast<char>(c));
        if (c != '?' && optarg) r.append("=").append(optarg);
        out.results.push_back(r);
    }
    out.end_index = optind;
    return out;
}

struct Case {
    const char* name;
    std::vector<std::string> argv;
    std::vector<std::string> results;
    int end_index;
};

TEST(Getopt, ScansOptionsTheWayTheLauncherExpects) {
    const Case cases[] = {
        {"no_options", {"q", "java", "Main"}, {}, 1},
        {"grouped_flags_and_attached_arg", {"q", "-dsw/tmp", "java"}, {"d", "s", "w=/tmp"}, 2},
        {"separate_arg", {"q", "-c", "a:b", "-d", "java"}, {"c=a:b", "d"}, 4},
        {"double_dash_ends_options", {"q", "-d", "--", "java", "-s"}, {"d"}, 3},
        {"lone_dash_is_an_empty_group", {"q", "-d", "-", "java"}, {"d"}, 3},
        {"dash_inside_group_ends_options", {"q", "-d-s", "-s", "java"}, {"d"}, 2},
        {"missing_arg_at_end", {"q", "-c"}, {"?"}, 2},
        {"dash_word_is_never_an_arg", {"q", "-c", "-d", "java"}, {"?", "d"}, 3},
        {"unknown_letter_then_rest_of_group", {"q", "-zd", "java"}, {"?", "d"}, 2},
        {"colon_comes_back_as_a_letter", {"q", "-:", "java"}, {":"}, 2},
        {"options_stop_at_first_word", {"q", "java", "-d"}, {}, 1},
        {"arg_group_after_consumed_arg", {"q", "-u", "a", "-ds", "x"}, {"u=a", "d", "s"}, 4},
        {"only_options", {"q", "-d", "-s"}, {"d", "s"}, 3},
    };
    for (const Case& c : cases) {
        Scan got = scan(c.argv);
        EXPECT_EQ(got.results, c.results) << c.name;
        EXPECT_EQ(got.end_index, c.end_index) << c.name;
    }
}

TEST(Getopt, ReportsFaultsOnStandardErrorWhenAsked) {
    std::vector<std::string> words = {"qorvel", "-z", "-c"};
    std::vector<char*> argv;
    for (std::string& w : words) argv.push_back(w.data());
    argv.push_back(nullptr);
    testing::internal::CaptureStderr();
    opterr = 1;
    optind = 0;
    while (getopt(3, argv.data(), kOptionString) != -1) {
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "qorvel: illegal option -- z\nqorvel: option requires an argument -- c\n");
}

}  // namespace
}  // namespace qorvel::opt
