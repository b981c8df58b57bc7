#pragma once

#include "tools/base/JsonWriter.h"
#include "tools/diff/Difference.h"

namespace lvp::tool {

/// Writes an object for each difference, into an array that the caller begins and ends.
class JsonReport : public IReport {
public:
    explicit JsonReport(JsonWriter& json) : _json(json) {}

    void tell(const tDifference& difference) override;

private:
    void write(const char* key, const tSide& side);
    void writeChange(const tDifference& difference);

    JsonWriter& _json;
};

}  // namespace lvp::tool
