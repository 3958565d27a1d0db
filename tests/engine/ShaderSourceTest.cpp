#include "ShaderSource.h"

#include "TempRootTest.h"
#include "jLog.h"

namespace {

using Lines = jVector<jString>;

using ShaderSourceTest = TempRootTest; // a root holding the shader files of each test

TEST_F(ShaderSourceTest, PreludeDefinesAndMultiLineEntries)
{
    ShaderSource source;
    ASSERT_TRUE(source.assemble({"void main()", "{", "\tx = a;\n#else\nx = b;\n", "}"}, {"LIT", "", "BANDS=3"}, true));
    EXPECT_EQ(source.getText(), "#version 410 core\n"
                                "#define LIT\n"
                                "#define BANDS 3\n"
                                "#define __MATERAIL_EDITOR__\n"
                                "void main()\n"
                                "{\n"
                                "\tx = a;\n"
                                "#else\n"
                                "x = b;\n"
                                "}\n");
    ASSERT_EQ(source.getLineCount(), 10u);
    EXPECT_EQ(source.locate(4), "prelude:4");
    EXPECT_EQ(source.locate(5), "generated:1");
    EXPECT_EQ(source.locate(8), "generated:4") << "the physical lines of one entry are counted one by one";
    EXPECT_EQ(source.locate(0), "?:0");
    EXPECT_EQ(source.locate(11), "?:11");
    EXPECT_EQ(source.origin(11), nullptr);

    ASSERT_TRUE(source.assemble({}, {}, false));
    EXPECT_EQ(source.getText(), "#version 410 core\n") << "no editor define outside the editor";
}

TEST_F(ShaderSourceTest, IncludesResolveThroughTheDataRootOncePerProgram)
{
    root.write("data/shaders/common.h", "// common\r\nfloat one() { return 1.0; }\n");
    root.write("data/shaders/a.h", "#include \"data/shaders/common.h\"\nfloat a() { return one(); }");
    root.write("data/shaders/b.h", "  #  include \"data/shaders/common.h\" // again\nfloat b();\n");
    ShaderSource source;
    jLog::Capture log;
    ASSERT_TRUE(source.assemble({"#include \"data/shaders/a.h\"", "#include \"data/shaders/b.h\"", "void main() {}",
                                    "#include \"data/shaders/a.h\""},
        {}, false));
    EXPECT_EQ(source.getText(), "#version 410 core\n"
                                "// common\n"
                                "float one() { return 1.0; }\n"
                                "float a() { return one(); }\n"
                                "float b();\n"
                                "void main() {}\n");
    EXPECT_EQ(source.getIncludes(), (Lines{"data/shaders/a.h", "data/shaders/common.h", "data/shaders/b.h"}));
    EXPECT_EQ(source.locate(4), "data/shaders/a.h:2");
    EXPECT_EQ(source.locate(5), "data/shaders/b.h:2");
    EXPECT_EQ(source.locate(6), "generated:3");
    EXPECT_TRUE(log.empty());
}

TEST_F(ShaderSourceTest, IncludeErrorsNameTheIncludingFileAndLine)
{
    root.write("data/shaders/outer.h", "// outer\n#include \"data/shaders/missing.h\"\n");
    root.write("data/shaders/bad.h", "#include <data/shaders/outer.h>\n");
    const struct {
        Lines lines;
        jString error;
    } cases[] = {
        {{"// x", "#include \"data/shaders/outer.h\""},
            "data/shaders/outer.h:2: can't open include \"data/shaders/missing.h\": no such file"},
        {{"#include \"/etc/passwd\""}, "generated:1: include \"/etc/passwd\" is outside the data root"},
        {{"#include \"data/../../x.h\""}, "generated:1: include \"data/../../x.h\" is outside the data root"},
        {{"#include \"data/shaders/bad.h\""}, "data/shaders/bad.h:1: malformed #include"},
        {{"#include \"data/shaders/outer.h\" x"}, "generated:1: malformed #include"},
    };
    for (const auto& c : cases) {
        ShaderSource source;
        jLog::Capture log;
        EXPECT_FALSE(source.assemble(c.lines, {"A"}, true)) << c.error;
        EXPECT_EQ(source.getError(), c.error);
        EXPECT_EQ(log.lines(), (Lines{"error: ShaderSource: " + c.error}));
        EXPECT_EQ(source.getText(), "");
        EXPECT_EQ(source.getLineCount(), 0u);
    }
}

TEST_F(ShaderSourceTest, IncludeDepthIsLimitedAndSelfIncludesEnd)
{
    // level1.h includes level2.h ... level<n>.h holds the code.
    auto chain = [&](int levels) {
        for (int level = 1; level < levels; ++level)
            root.write(jFormat("data/chain%d/level%d.h", levels, level),
                jFormat("#include \"data/chain%d/level%d.h\"\n", levels, level + 1));
        root.write(jFormat("data/chain%d/level%d.h", levels, levels), "float deepest;\n");
        return Lines{jFormat("#include \"data/chain%d/level1.h\"", levels)};
    };
    ShaderSource source;
    ASSERT_TRUE(source.assemble(chain(ShaderSource::kMaxIncludeDepth), {}, false));
    EXPECT_EQ(source.getText(), "#version 410 core\nfloat deepest;\n");

    jLog::Capture log;
    EXPECT_FALSE(source.assemble(chain(ShaderSource::kMaxIncludeDepth + 1), {}, false));
    EXPECT_EQ(source.getError(), "data/chain17/level16.h:1: includes nest deeper than 16 levels at "
                                 "\"data/chain17/level17.h\"");

    root.write("data/self.h", "#include \"data/self.h\"\nfloat self;\n");
    ASSERT_TRUE(source.assemble({"#include \"data/self.h\""}, {}, false));
    EXPECT_EQ(source.getText(), "#version 410 core\nfloat self;\n");
}

TEST_F(ShaderSourceTest, TranslatesCompilerLogsToSourceLines)
{
    root.write("data/lib.h", "float f;\nfloat g;\n");
    ShaderSource source;
    ASSERT_TRUE(source.assemble({"#include \"data/lib.h\"", "void main()", "{", "}"}, {"X"}, false));
    // 1 version, 2 define, 3-4 lib.h (generated:1), 5-7 generated:2-4.
    EXPECT_EQ(source.translateLog("ERROR: 0:4: 'g' : redefinition\n"
                                  "ERROR: /tmp/p.frag:6: '' : syntax error\n"
                                  "0:7(3): error: syntax error\n"
                                  "0(2) : error C0000: bad define\n"
                                  "WARNING: 0:99: out of range\n"
                                  "ERROR: 1 compilation errors.  No code generated.\n"),
        "ERROR: data/lib.h:2: 'g' : redefinition\n"
        "ERROR: generated:3: '' : syntax error\n"
        "generated:4(3): error: syntax error\n"
        "prelude:2 : error C0000: bad define\n"
        "WARNING: ?:99: out of range\n"
        "ERROR: 1 compilation errors.  No code generated.\n");
}

} // namespace

TEST(ShaderSourceLogLine, SplitsTheLineNumberFromTheMessageInEveryCompilerForm)
{
    const std::pair<const char*, const char*> forms[] = {
        {"ERROR: 0:12: 'x' : undeclared identifier", "'x' : undeclared identifier"},
        {"0:12(5): error: `x' undeclared", "error: `x' undeclared"},
        {"0(12) : error C1008: undefined variable \"x\"", "error C1008: undefined variable \"x\""},
    };
    for (const auto& [line, message] : forms) {
        size_t number = 0;
        jString text;
        ASSERT_TRUE(ShaderSource::parseLogLine(line, number, text)) << line;
        EXPECT_EQ(number, 12u) << line;
        EXPECT_EQ(text, message);
    }
    size_t number = 0;
    jString text;
    EXPECT_FALSE(ShaderSource::parseLogLine("ERROR: 1 compilation errors.  No code generated.", number, text));
}
