#include "converter/output_check.h"

#include "converter/file_ops.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <fstream>
#include <vector>

namespace pl::converter {

namespace {

class File {
public:
    explicit File(const std::string& path) : in_(fsPath(path), std::ios::binary) {
        if (in_) {
            in_.seekg(0, std::ios::end);
            size_ = static_cast<std::uint64_t>(std::max<std::streamoff>(in_.tellg(), 0));
        }
    }
    bool open() const { return static_cast<bool>(in_); }
    std::uint64_t size() const { return size_; }

    // Up to `count` bytes from `offset`; fewer at the end of the file.
    std::string read(std::uint64_t offset, std::uint64_t count) {
        if (offset >= size_)
            return {};
        count = std::min(count, size_ - offset);
        std::string data(count, '\0');
        in_.clear();
        in_.seekg(static_cast<std::streamoff>(offset));
        in_.read(data.data(), static_cast<std::streamsize>(count));
        data.resize(static_cast<std::size_t>(std::max<std::streamsize>(in_.gcount(), 0)));
        return data;
    }
    std::string tail(std::uint64_t count) { return read(size_ - std::min(size_, count), count); }

private:
    std::ifstream in_;
    std::uint64_t size_ = 0;
};

bool isPdfSpace(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f' || c == '\0';
}

bool isPdfDelimiter(char c) {
    return isPdfSpace(c) || std::string_view("()<>[]{}/%").find(c) != std::string_view::npos;
}

// Page objects ("/Type /Page", not "/Pages") in a stretch of a PDF whose matches start before
// `countBefore`.
std::size_t countPages(std::string_view data, std::size_t countBefore) {
    std::size_t pages = 0;
    for (std::size_t at = data.find("/Type"); at != std::string_view::npos && at < countBefore;
         at = data.find("/Type", at + 1)) {
        std::size_t i = at + 5;
        while (i < data.size() && isPdfSpace(data[i]))
            ++i;
        if (data.substr(i, 5) == "/Page" && i + 5 < data.size() && isPdfDelimiter(data[i + 5]))
            ++pages;
    }
    return pages;
}

bool startsWithObjectHeader(std::string_view text) {
    // "12 0 obj"
    std::size_t i = 0;
    for (int part = 0; part < 2; ++part) {
        const std::size_t digits = i;
        while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])))
            ++i;
        if (i == digits || i >= text.size() || !isPdfSpace(text[i]))
            return false;
        while (i < text.size() && isPdfSpace(text[i]))
            ++i;
    }
    return text.substr(i, 3) == "obj";
}

std::optional<std::string> checkPdf(File& file) {
    const std::string tail = file.tail(2048);
    const std::size_t eof = tail.rfind("%%EOF");
    const std::size_t startxref = tail.rfind("startxref", eof);
    if (eof == std::string::npos || startxref == std::string::npos)
        return "the PDF has no trailer";
    std::uint64_t offset = 0;
    std::size_t i = startxref + 9;
    while (i < eof && isPdfSpace(tail[i]))
        ++i;
    const std::size_t digits = i;
    for (; i < eof && std::isdigit(static_cast<unsigned char>(tail[i])); ++i)
        offset = offset * 10 + static_cast<std::uint64_t>(tail[i] - '0');
    const std::string target = i > digits && offset < file.size() ? file.read(offset, 64) : std::string();
    if (!target.starts_with("xref") && !startsWithObjectHeader(target))
        return "the PDF's trailer points at no cross-reference";

    constexpr std::size_t kBlock = 1 << 20;
    constexpr std::size_t kOverlap = 64; // longer than any "/Type /Page" match
    std::size_t pages = 0;
    bool objectStreams = false;
    std::string carried;
    for (std::uint64_t at = 0; at < file.size(); at += kBlock) {
        std::string data = carried + file.read(at, kBlock);
        const bool last = at + kBlock >= file.size();
        const std::size_t countBefore = last ? data.size() : data.size() - std::min(data.size(), kOverlap);
        pages += countPages(data, countBefore);
        objectStreams = objectStreams || data.find("/ObjStm") != std::string::npos;
        carried = data.substr(countBefore);
    }
    // Pages kept in compressed object streams cannot be counted here; Ghostscript's own count
    // decides then.
    if (pages == 0 && !objectStreams)
        return "the PDF has no page";
    return std::nullopt;
}

std::uint32_t number(std::string_view bytes, bool bigEndian) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto byte = static_cast<unsigned char>(bytes[bigEndian ? i : bytes.size() - 1 - i]);
        value = (value << 8) | byte;
    }
    return value;
}

// Every image directory of the chain, and the strips or tiles each names, lie inside the file.
std::optional<std::string> checkTiff(File& file) {
    const bool big = file.read(0, 2) == "MM";
    std::uint64_t ifd = number(file.read(4, 4), big);
    int directories = 0;
    while (ifd != 0) {
        if (++directories > 100000 || ifd < 8 || ifd + 2 > file.size())
            return "an image directory of the TIFF file lies outside it";
        const std::uint32_t entries = number(file.read(ifd, 2), big);
        const std::string table = file.read(ifd + 2, std::uint64_t{entries} * 12 + 4);
        if (table.size() != std::size_t{entries} * 12 + 4)
            return "an image directory of the TIFF file is cut off";
        std::vector<std::uint64_t> offsets, counts;
        for (std::uint32_t e = 0; e < entries; ++e) {
            const std::string_view entry = std::string_view(table).substr(std::size_t{e} * 12, 12);
            const std::uint32_t tag = number(entry.substr(0, 2), big);
            const std::uint32_t type = number(entry.substr(2, 2), big);
            const std::uint32_t count = number(entry.substr(4, 4), big);
            // Strip or tile offsets (273, 324) and byte counts (279, 325), as SHORT or LONG.
            const bool isOffsets = tag == 273 || tag == 324;
            if (!(isOffsets || tag == 279 || tag == 325) || (type != 3 && type != 4) || count > 1000000)
                continue;
            const std::size_t width = type == 3 ? 2 : 4;
            const std::string values = count * width <= 4 ? std::string(entry.substr(8, 4))
                                                           : file.read(number(entry.substr(8, 4), big), count * width);
            if (values.size() < count * width)
                return "the TIFF file is cut off";
            auto& list = isOffsets ? offsets : counts;
            for (std::uint32_t v = 0; v < count; ++v)
                list.push_back(number(std::string_view(values).substr(v * width, width), big));
        }
        for (std::size_t s = 0; s < offsets.size() && s < counts.size(); ++s) {
            if (offsets[s] + counts[s] > file.size())
                return "the TIFF file is cut off";
        }
        ifd = number(std::string_view(table).substr(std::size_t{entries} * 12, 4), big);
    }
    return directories == 0 ? std::optional<std::string>("the TIFF file holds no image") : std::nullopt;
}

// One picture after the other (Ghostscript puts every page into the one file), each as long as
// it says, up to the file's last byte.
std::optional<std::string> checkBmp(File& file) {
    std::uint64_t at = 0;
    while (at < file.size()) {
        const std::string header = file.read(at, 6);
        const std::uint32_t length = header.size() == 6 ? number(std::string_view(header).substr(2), false) : 0;
        if (!header.starts_with("BM") || length < 14)
            return "the BMP file is cut off";
        at += length;
    }
    return at == file.size() ? std::nullopt : std::optional<std::string>("the BMP file is cut off");
}

} // namespace

std::optional<std::string> incompleteOutput(const std::string& path) {
    File file(path);
    if (!file.open())
        return "the file cannot be read";
    if (file.size() == 0)
        return "the file is empty";
    const std::string head = file.read(0, 8);
    if (head.starts_with("%PDF-"))
        return checkPdf(file);
    if (head == "\x89PNG\r\n\x1a\n")
        return file.tail(12) == std::string("\0\0\0\0IEND\xae\x42\x60\x82", 12)
                   ? std::nullopt
                   : std::optional<std::string>("the PNG file has no end");
    if (head.starts_with(std::string("II*\0", 4)) || head.starts_with(std::string("MM\0*", 4)))
        return checkTiff(file);
    if (head.starts_with("\xff\xd8\xff"))
        return file.tail(2) == "\xff\xd9" ? std::nullopt : std::optional<std::string>("the JPEG file has no end");
    if (head.starts_with("%!"))
        return file.tail(64).find("%%EOF") != std::string::npos
                   ? std::nullopt
                   : std::optional<std::string>("the PostScript file has no end");
    if (head.starts_with("BM"))
        return checkBmp(file);
    return std::nullopt;
}

} // namespace pl::converter
