#include "captions/Sentences.h"

#include "QtPrinters.h"

#include <gtest/gtest.h>

namespace {

TEST(SentencesTest, EachClosingMarkEndsASentence)
{
    EXPECT_EQ(Sentences::split(QStringLiteral("  Hello there. How are you?I'm fine!  ")),
              (QStringList{QStringLiteral("Hello there."), QStringLiteral("How are you?"), QStringLiteral("I'm fine!")}));
    EXPECT_EQ(Sentences::split(QStringLiteral(u"今天讲函数。有问题吗？没有！")),
              (QStringList{QStringLiteral(u"今天讲函数。"), QStringLiteral(u"有问题吗？"), QStringLiteral(u"没有！")}));
    EXPECT_EQ(Sentences::split(QStringLiteral("It costs 3.5 euros")),
              (QStringList{QStringLiteral("It costs 3."), QStringLiteral("5 euros")}))
        << "a decimal point splits too";
    EXPECT_EQ(Sentences::split(QStringLiteral("no mark at the end")), QStringList{QStringLiteral("no mark at the end")});
    EXPECT_EQ(Sentences::split(QStringLiteral("Wait... what?\n\n")),
              (QStringList{QStringLiteral("Wait."), QStringLiteral("."), QStringLiteral("."), QStringLiteral("what?")}));
    EXPECT_TRUE(Sentences::split(QStringLiteral(" \n\t ")).isEmpty());
}

} // namespace
