#include "zyvector.h"

#include <climits>
#include <cstring>

#include "job/mrtest.h"
#include "parameter/mrmemory.h"
#include "stream/mrostream.h"
#include "zycomponent.h"

std::uint32_t zyVector::m_seed = 0;

zyVector::~zyVector() { zyVector::deleteVector(); }

void zyVector::init(zyType type) {
    zyVector::deleteVector();
    m_type = type;
    m_func = mrString("_") + zyFunc::typeToString(type) + "_";
}

void zyVector::init(zyFunc func, int argument) {
    init(func.type(argument));
    m_func += func.channelsName(argument);
}

void zyVector::init(zyFunc func, zyArg argument) {
    init(func.type(argument));
    m_func += func.channelsName(argument);
}

mrString zyVector::objectInfo() const {
    mrString info = "Vector ";
    return info << zyFunc::typeToString(m_type) << " len=" << m_len;
}

bool zyVector::reserveCopy() {
    if (m_data == nullptr) {
        return false;
    }
    deleteReservedCopy();
    m_reserved.reset(std::calloc(static_cast<std::size_t>(size()), 1));
    if (m_reserved == nullptr) {
        return false;
    }
    std::memcpy(m_reserved.get(), m_data, static_cast<std::size_t>(size()));
    return true;
}

bool zyVector::setReservedCopy() {
    if (m_data == nullptr || m_reserved == nullptr) {
        return false;
    }
    std::memcpy(m_data, m_reserved.get(), static_cast<std::size_t>(size()));
    return true;
}

void zyVector::deleteReservedCopy() { m_reserved.reset(); }

bool zyVector::allocateVector(long long bytes, int align, mrObject* owner) {
    deleteVector();
    if (bytes < 1 || bytes > INT_MAX) {
        g_ostrm << MSG_ERR << "-- Memory fail: can't allocate " << mrText(bytes) << " bytes\n" << MSG_END;
        if (bytes > INT_MAX) {
            mrCountRefusedBlock();
        }
        return false;
    }
    int distance = align;
    if (align < 0) {
        distance = mrGetAlignByByte() ? -1 : -itemSize();
    }
    m_data = mrTest::allocate(static_cast<int>(bytes), distance, owner != nullptr ? owner : this);
    if (m_data == nullptr) {
        return false;
    }
    std::memset(m_data, 0, static_cast<std::size_t>(bytes));
    m_views.set(m_type, m_data);
    return true;
}

bool zyVector::createVector(long long len, int align, mrObject* owner) {
    if (!allocateVector(itemSize() * len, align, owner)) {
        return false;
    }
    m_len = static_cast<int>(len);
    setConst();
    return true;
}

bool zyVector::createVectorExt(long long len, int align, SetMode mode, double a, double b) {
    if (!createVector(len, align)) {
        return false;
    }
    setVector(mode, a, b);
    return true;
}

void zyVector::deleteVector() {
    if (m_data != nullptr) {
        mrTest::deallocate(m_data);
        m_data = nullptr;
    }
    m_len = 0;
    m_reserved.reset();
    m_views.set(m_type, nullptr);
}

void* zyVector::getPointerAt(int index) const {
    if (m_data == nullptr) {
        return nullptr;
    }
    return static_cast<char*>(m_data) + static_cast<std::ptrdiff_t>(index) * itemSize();
}

void zyVector::getElement(const void* element, double& re, double& im) const {
    re = 0.0;
    im = 0.0;
    if (element == nullptr) {
        return;
    }
    zyWithComponent(m_type, [&]<class T>(T) {
        re = static_cast<double>(zyLoad<T>(element));
        if ((m_type & zyTypeComplex) != 0) {
            im = static_cast<double>(zyLoad<T>(static_cast<const char*>(element) + sizeof(T)));
        }
    });
}

double zyVector::getElement(const void* element) const {
    double re = 0.0;
    double im = 0.0;
    getElement(element, re, im);
    return re;
}
