#include "SourceTexts.h"

#include <gtest/gtest.h>

TEST(SourceTexts, FindsTheLiteralsOfCode)
{
    struct Row {
        const char* code;
        QStringList texts;
    };
    const auto list = [](const char* texts) { return QString::fromUtf8(texts).split(u'|'); };
    const Row rows[] = {
        {R"(f("Да"); g(u"Нет");)", list("Да|Нет")},
        {"f(\"Раз, \"\n  // и\n  /* ещё */ \"два\");", list("Раз, два")},
        {R"(f("Раз", "два") ? "три" : "четыре" + "пять")", list("Раз|два|три|четыре|пять")},
        {"// \"Нет\"\n/* \"Нет\n\" */ \"Да\"", list("Да")},
        {R"(auto a = '"'; auto b = u'\''; f("Да"))", list("Да")},
        {"int a = 1'000'000; f(\"Да\"); int b = 0xFF'FFu;", list("Да")},
        {R"(f("\"Да\"\\\n\t\u0414 // %d"))", {QString::fromUtf8("\"Да\"\\\n\tД // %d")}},
        {R"__(f(R"x("Да")" )x", uR"(\n)"))__", {QString::fromUtf8("\"Да\")\" "), QStringLiteral("\\n")}},
        {R"(FOOR"Да")", list("Да")}, // a macro before a literal is no prefix
        {"f(\"Нет\"); // not shown\nf(\"Да\"); // shown", list("Да")},
        {"f(\"Нет, \"\n  \"нет\"); // not shown\nf(\"Да\");", list("Да")},
        {"\"Да", list("Да")}, // an unfinished literal ends with the file
        {"", {}},
    };
    for (const Row& row : rows) {
        QStringList found;
        for (const SourceTexts::Text& text : SourceTexts::inCode(row.code, QStringLiteral("a.cpp")))
            found.append(text.text);
        EXPECT_EQ(found, row.texts) << row.code;
    }
}

TEST(SourceTexts, NamesTheLineOfALiteral)
{
    const auto texts = SourceTexts::inCode("/*\n\n*/\n\"a\"\n\"b\";\n R\"(\n)\" ; \"c\"", QStringLiteral("a.cpp"));
    ASSERT_EQ(texts.size(), 3);
    EXPECT_EQ(texts[0].line, 4);
    EXPECT_EQ(texts[1].line, 6);
    EXPECT_EQ(texts[2].line, 7);
}
