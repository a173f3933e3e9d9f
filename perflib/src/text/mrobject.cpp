#include "text/mrobject.h"

#include "text/mrstring.h"

int mrObject::objectSize() const { return 0; }

mrString mrObject::objectInfo() const { return {}; }

bool mrObject::reserveCopy() { return false; }

bool mrObject::setReservedCopy() { return false; }

void mrObject::deleteReservedCopy() {}
