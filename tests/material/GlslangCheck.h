#pragma once

#include "ShaderSource.h"
#include "TempFolder.h"

#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>

// Assembles a vertex and a pixel program with ShaderSource and links them
// with glslangValidator; the log's line references are translated to their
// sources ("generated:12", "data/core/shaders/lighting.h:40").
struct GlslangVerdict {
    int exitCode = -1;
    std::string log;
};

inline GlslangVerdict glslangCheck(const TempFolder& folder, const std::string& stem, const jVector<jString>& vertexLines,
    const jVector<jString>& pixelLines, const jVector<jString>& defines, bool editor)
{
    ShaderSource vertex;
    ShaderSource pixel;
    if (!vertex.assemble(vertexLines, defines, editor))
        return {-1, "vertex: " + vertex.getError()};
    if (!pixel.assemble(pixelLines, defines, editor))
        return {-1, "pixel: " + pixel.getError()};
    const std::string vertexPath = folder.write(stem + ".vert", vertex.getText());
    const std::string pixelPath = folder.write(stem + ".frag", pixel.getText());
    const std::string logPath = folder / (stem + ".log");
    const std::string command = "glslangValidator -l '" + vertexPath + "' '" + pixelPath + "' > '" + logPath + "' 2>&1";
    const int status = std::system(command.c_str());
    GlslangVerdict verdict{WIFEXITED(status) ? WEXITSTATUS(status) : -1, {}};
    std::ifstream in(logPath, std::ios::binary);
    std::string line;
    while (std::getline(in, line)) {
        if (line.find(pixelPath) != std::string::npos)
            line = pixel.translateLog(line);
        else if (line.find(vertexPath) != std::string::npos)
            line = vertex.translateLog(line);
        verdict.log += line + "\n";
    }
    return verdict;
}
