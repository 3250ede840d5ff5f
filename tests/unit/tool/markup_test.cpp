// Text inside HTML, SVG and XML.
#include "common/markup.h"

#include <gtest/gtest.h>

using namespace tool;

namespace {

TEST(Markup, TextStaysText)
{
    EXPECT_EQ(escaped("<script>\"&\x01"), "&lt;script&gt;&quot;&amp;\\x01");
    EXPECT_EQ(escaped("\xff\xc3 \xc3\xa9"), "\\xFF\\xC3 \xc3\xa9");
    EXPECT_EQ(escaped("a\nb\tc"), "a\\x0Ab\tc");
}

TEST(Markup, CodePointsThatAreNoCharacters)
{
    EXPECT_EQ(escaped("\uFFFD-\uFDCF-\uFDF0-\U0001F4E1"), "\uFFFD-\uFDCF-\uFDF0-\U0001F4E1");
    EXPECT_EQ(escaped("\xef\xbf\xbe\xef\xbf\xbf"), "\uFFFD\uFFFD");         // U+FFFE, U+FFFF
    EXPECT_EQ(escaped("\xef\xb7\x90\xef\xb7\xaf"), "\uFFFD\uFFFD");         // U+FDD0, U+FDEF
    EXPECT_EQ(escaped("\xf0\x9f\xbf\xbe\xf4\x8f\xbf\xbf"), "\uFFFD\uFFFD"); // U+1FFFE, U+10FFFF
}

TEST(Markup, Elements)
{
    const Markup link = element("a", "x < y", {{"href", "#a\"b"}, {"class", ""}});
    EXPECT_EQ(link.text(), "<a href=\"#a&quot;b\">x &lt; y</a>");
    EXPECT_EQ(block("p", "see " + link).text(), "<p>see <a href=\"#a&quot;b\">x &lt; y</a></p>\n");
    EXPECT_TRUE(Markup().empty());
}

} // namespace
