#include "DdsHeader.h"

namespace {

// Word offsets inside the 124-byte header.
enum : size_t {
    WordSize = 0,
    WordFlags = 1,
    WordHeight = 2,
    WordWidth = 3,
    WordPitch = 4,
    WordDepth = 5,
    WordMipMapCount = 6,
    WordPfSize = 18,
    WordPfFlags = 19,
    WordPfFourCC = 20,
    WordPfBitCount = 21,
    WordPfMasks = 22,
    WordCaps = 26,
    WordCaps2 = 27,
    HeaderWords = 31,
};

} // namespace

uint32_t DdsHeader::readWord(const uint8_t* bytes)
{
    return uint32_t(bytes[0]) | uint32_t(bytes[1]) << 8 | uint32_t(bytes[2]) << 16 | uint32_t(bytes[3]) << 24;
}

void DdsHeader::appendWord(std::vector<uint8_t>& out, uint32_t word)
{
    for (int shift = 0; shift < 32; shift += 8)
        out.push_back(uint8_t(word >> shift));
}

void DdsHeader::readHeader(const uint8_t* bytes)
{
    auto word = [bytes](size_t index) { return readWord(bytes + index * 4); };
    size = word(WordSize);
    flags = word(WordFlags);
    height = word(WordHeight);
    width = word(WordWidth);
    pitchOrLinearSize = word(WordPitch);
    depth = word(WordDepth);
    mipMapCount = word(WordMipMapCount);
    pfSize = word(WordPfSize);
    pfFlags = word(WordPfFlags);
    pfFourCC = word(WordPfFourCC);
    pfBitCount = word(WordPfBitCount);
    for (size_t i = 0; i < 4; ++i)
        pfMasks[i] = word(WordPfMasks + i);
    caps = word(WordCaps);
    caps2 = word(WordCaps2);
}

void DdsHeader::readDx10(const uint8_t* bytes)
{
    hasDx10 = true;
    dxgiFormat = readWord(bytes);
    resourceDimension = readWord(bytes + 4);
    miscFlag = readWord(bytes + 8);
    arraySize = readWord(bytes + 12);
    miscFlags2 = readWord(bytes + 16);
}

void DdsHeader::write(std::vector<uint8_t>& out) const
{
    uint32_t words[HeaderWords] = {};
    words[WordSize] = size;
    words[WordFlags] = flags;
    words[WordHeight] = height;
    words[WordWidth] = width;
    words[WordPitch] = pitchOrLinearSize;
    words[WordDepth] = depth;
    words[WordMipMapCount] = mipMapCount;
    words[WordPfSize] = pfSize;
    words[WordPfFlags] = pfFlags;
    words[WordPfFourCC] = pfFourCC;
    words[WordPfBitCount] = pfBitCount;
    for (size_t i = 0; i < 4; ++i)
        words[WordPfMasks + i] = pfMasks[i];
    words[WordCaps] = caps;
    words[WordCaps2] = caps2;

    appendWord(out, Magic);
    for (uint32_t word : words)
        appendWord(out, word);
    if (hasDx10) {
        appendWord(out, dxgiFormat);
        appendWord(out, resourceDimension);
        appendWord(out, miscFlag);
        appendWord(out, arraySize);
        appendWord(out, miscFlags2);
    }
}
