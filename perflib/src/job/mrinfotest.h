#pragma once

#include "job/mrtest.h"
#include "machine/mrcachesize.h"

// Names with leading underscores sort in front of all functions, and have always been what users select by
// -f.

/// A test that measures nothing: it prints what it knows about the machine.
class __mrInfoTest : public mrTest {
  public:
    using mrTest::mrTest;
    void loopData() override;
    void outputRegInfo() override {}
    virtual void printInformation() {}
};

class __mrZorvaCpuTest : public __mrInfoTest {
  public:
    using __mrInfoTest::__mrInfoTest;
    void printInformation() override;
};

// The next two are for suites, which may register them; the program registers the processor's test alone.

class __mrOSTest : public __mrInfoTest {
  public:
    using __mrInfoTest::__mrInfoTest;
    void printInformation() override;
};

class __mrHostTest : public __mrInfoTest {
  public:
    using __mrInfoTest::__mrInfoTest;
    void printInformation() override;
};
