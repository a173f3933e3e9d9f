#include "stream/mrfilelist.h"

#include "stream/mrjournal.h"

mrFileList::~mrFileList() { close(); }

bool mrFileList::addStream(mrString name, bool append) {
    if (g_journal.isProbe()) {
        return true;
    }
    auto stream = std::make_unique<mrOutputFile>(name, append);
    if (!stream->isOpen()) {
        return false;
    }
    mrList::append(stream.get());
    m_opened.push_back(std::move(stream));
    return true;
}

void mrFileList::flush() {
    for (o_stream* stream : *this) {
        stream->flush();
    }
}

void mrFileList::sync() {
    for (o_stream* stream : *this) {
        stream->sync();
    }
}

void mrFileList::addSizes(std::vector<long long>& sizes) const {
    for (const auto& file : m_opened) {
        sizes.push_back(file->size());
    }
}

void mrFileList::cutBack(std::vector<long long>::const_iterator& size) {
    for (const auto& file : m_opened) {
        file->cut(*size++);
    }
}

void mrFileList::cutHalfLines() {
    for (const auto& file : m_opened) {
        file->cutHalfLine();
    }
}

void mrFileList::close() {
    // What can't be written shows while all files are open still, so that the others take the message.
    sync();
    for (o_stream* stream : *this) {
        stream->close();
    }
}

void mrFileList::write(const mrString& text) {
    for (o_stream* stream : *this) {
        *stream << text;
    }
}
