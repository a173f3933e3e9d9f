#include "zyvectorviews.h"

namespace {

template <class T>
void pointIf(bool chosen, T*& view, void* data) {
    view = chosen ? static_cast<T*>(data) : nullptr;
}

}  // namespace

void zyVectorViews::set(zyType type, void* data) {
    pointIf(type == zy8u, m_8u, data);
    pointIf(type == zy16u, m_16u, data);
    pointIf(type == zy32u, m_32u, data);
    pointIf(type == zy64u, m_64u, data);
    pointIf(type == zy8s, m_8s, data);
    pointIf(type == zy16s, m_16s, data);
    pointIf(type == zy32s, m_32s, data);
    pointIf(type == zy64s, m_64s, data);
    pointIf(type == zy32f, m_32f, data);
    pointIf(type == zy64f, m_64f, data);
    pointIf(type == zy16uc, m_16uc, data);
    pointIf(type == zy8sc, m_8sc, data);
    pointIf(type == zy16sc, m_16sc, data);
    pointIf(type == zy32sc, m_32sc, data);
    pointIf(type == zy64sc, m_64sc, data);
    pointIf(type == zy32fc, m_32fc, data);
    pointIf(type == zy64fc, m_64fc, data);
}
