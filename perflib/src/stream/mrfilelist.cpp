#include "stream/mrfilelist.h"

#include "stream/mroutputfile.h"

mrFileList::~mrFileList() { close(); }

bool mrFileList::addStream(mrString name, bool append) {
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
