#include "LogTail.h"

#include <fstream>
#include <system_error>

namespace lorvane::desktop {

namespace {

// CR LF and lone CRs become line feeds.
std::string WithLineFeeds(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r') {
            out.push_back(text[i]);
        } else if (i + 1 == text.size() || text[i + 1] != '\n') {
            out.push_back('\n');
        }
    }
    return out;
}

} // namespace

LogTail::News LogTail::ReadNew() {
    News news;
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(file_, error);
    const std::uintmax_t length = error ? 0 : size;
    if (length < offset_) {
        offset_ = 0;
        news.Restarted = true;
    }
    if (length == offset_) {
        return news;
    }
    std::ifstream in(file_, std::ios::binary);
    in.seekg(static_cast<std::streamoff>(offset_));
    std::string chunk(static_cast<std::size_t>(length - offset_), '\0');
    in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
    chunk.resize(static_cast<std::size_t>(in.gcount()));
    const std::size_t lastLineEnd = chunk.find_last_of('\n');
    if (lastLineEnd == std::string::npos) {
        return news;
    }
    chunk.resize(lastLineEnd + 1);
    offset_ += chunk.size();
    news.Text = WithLineFeeds(chunk);
    return news;
}

} // namespace lorvane::desktop
