#pragma once

class mrString;

/// Root of the data objects that a test allocates: what the memory listing and the set-and-use mode need to
/// know of the owner of a block. The root versions do nothing.
class mrObject {
  public:
    mrObject() = default;
    mrObject(const mrObject&) = default;
    mrObject& operator=(const mrObject&) = default;
    virtual ~mrObject() = default;

    /// Bytes of payload.
    virtual int objectSize() const;
    /// One line of description for the memory listing.
    virtual mrString objectInfo() const;
    /// Takes a copy of the payload; true if there is one now.
    virtual bool reserveCopy();
    /// Puts the copy back; false if there is none.
    virtual bool setReservedCopy();
    virtual void deleteReservedCopy();
};

/// Owner marks of a memory block, told apart by address alone and valid at any time, also before other
/// globals are built: a raw buffer of nobody in particular, and a block inside an object that is listed
/// already.
extern mrObject* const MEM_OBJECT_IS_BUFFER;
extern mrObject* const MEM_OBJECT_IS_SUBOBJECT;
