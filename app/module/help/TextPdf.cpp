#include "TextPdf.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

namespace lorvane::help {

namespace {

constexpr int PageWidth = 595; // A4 in points
constexpr int PageHeight = 842;
constexpr int Margin = 56;
constexpr int Leading = 12;
constexpr int LinesPerPage = (PageHeight - 2 * Margin) / Leading;

// A text in a PDF string: parentheses and backslashes escaped.
std::string Literal(std::string_view text) {
    std::string literal = "(";
    for (const char c : text) {
        if (c == '(' || c == ')' || c == '\\') {
            literal.push_back('\\');
        }
        literal.push_back(c);
    }
    return literal + ")";
}

std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    std::size_t start = 0;
    while (start < text.size()) {
        std::size_t end = text.find('\n', start);
        if (end == std::string_view::npos) {
            end = text.size();
        }
        std::string line(text.substr(start, end - start));
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        const std::string number = std::to_string(lines.size() + 1);
        if (line.size() > MaxLineLength) {
            throw std::invalid_argument("line " + number + " is longer than " +
                                        std::to_string(MaxLineLength) + " characters");
        }
        for (const char c : line) {
            if (c < ' ' || c > '~') {
                throw std::invalid_argument("line " + number +
                                            " holds a character outside printable ASCII");
            }
        }
        lines.push_back(std::move(line));
        start = end + 1;
    }
    return lines;
}

// The content stream of one page: its lines from the top margin down.
std::string PageContent(const std::vector<std::string>& lines, std::size_t first,
                        std::size_t last) {
    std::string content = "BT\n" + std::to_string(Margin) + " " +
                          std::to_string(PageHeight - Margin - Leading) + " Td\n" +
                          std::to_string(Leading) + " TL\n";
    for (std::size_t i = first; i < last; ++i) {
        const std::string& line = lines[i];
        const bool heading = line.starts_with("# ");
        content += heading ? "/F2 10 Tf " : "/F1 10 Tf ";
        content += Literal(heading ? std::string_view(line).substr(2) : line) + " Tj T*\n";
    }
    return content + "ET\n";
}

// Numbered objects and the cross-reference table that finds them.
class Document {
public:
    // The number of the next object; its body follows later.
    int Reserve() {
        offsets_.push_back(0);
        return static_cast<int>(offsets_.size());
    }
    void Define(int number, const std::string& body) {
        offsets_[static_cast<std::size_t>(number - 1)] = text_.size();
        text_ += std::to_string(number) + " 0 obj\n" + body + "\nendobj\n";
    }
    std::string Finish(int root, int info) {
        const std::size_t table = text_.size();
        text_ += "xref\n0 " + std::to_string(offsets_.size() + 1) + "\n0000000000 65535 f \n";
        for (const std::size_t offset : offsets_) {
            char entry[21];
            std::snprintf(entry, sizeof entry, "%010zu 00000 n \n", offset);
            text_ += entry;
        }
        text_ += "trailer\n<< /Size " + std::to_string(offsets_.size() + 1) + " /Root " +
                 std::to_string(root) + " 0 R /Info " + std::to_string(info) +
                 " 0 R >>\nstartxref\n" + std::to_string(table) + "\n%%EOF\n";
        return text_;
    }

private:
    std::string text_ = "%PDF-1.4\n";
    std::vector<std::size_t> offsets_;
};

} // namespace

std::string TextToPdf(std::string_view text, std::string_view title) {
    const std::vector<std::string> lines = SplitLines(text);
    Document document;
    const int catalog = document.Reserve();
    const int pages = document.Reserve();
    const int regular = document.Reserve();
    const int bold = document.Reserve();
    const int info = document.Reserve();
    document.Define(catalog, "<< /Type /Catalog /Pages " + std::to_string(pages) + " 0 R >>");
    document.Define(regular, "<< /Type /Font /Subtype /Type1 /BaseFont /Courier "
                             "/Encoding /WinAnsiEncoding >>");
    document.Define(bold, "<< /Type /Font /Subtype /Type1 /BaseFont /Courier-Bold "
                          "/Encoding /WinAnsiEncoding >>");
    document.Define(info, "<< /Title " + Literal(title) + " >>");

    std::string kids;
    int count = 0;
    for (std::size_t first = 0; first < lines.size() || count == 0; first += LinesPerPage) {
        const std::size_t last = std::min(lines.size(), first + LinesPerPage);
        const std::string content = PageContent(lines, first, last);
        const int stream = document.Reserve();
        document.Define(stream, "<< /Length " + std::to_string(content.size()) + " >>\nstream\n" +
                                    content + "endstream");
        const int page = document.Reserve();
        document.Define(page, "<< /Type /Page /Parent " + std::to_string(pages) +
                                  " 0 R /MediaBox [0 0 " + std::to_string(PageWidth) + " " +
                                  std::to_string(PageHeight) + "] /Resources << /Font << /F1 " +
                                  std::to_string(regular) + " 0 R /F2 " + std::to_string(bold) +
                                  " 0 R >> >> /Contents " + std::to_string(stream) + " 0 R >>");
        kids += (kids.empty() ? "" : " ") + std::to_string(page) + " 0 R";
        ++count;
    }
    document.Define(pages,
                    "<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(count) + " >>");
    return document.Finish(catalog, info);
}

} // namespace lorvane::help
