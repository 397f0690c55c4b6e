// Record-level access to saved files for tests: the records of a workbook stream, and a new
// container around a list of records.
#pragma once
#include <sstream>
#include <string>
#include <vector>

#include "biff/record_ids.h"
#include "biff/xls.h"

namespace zvtest {

struct Record {
    uint16_t id;
    std::string payload;
};

// The records of a file's workbook stream, up to a zero id or the end of the stream.
inline std::vector<Record> streamRecords(const std::string& file) {
    std::stringstream in(file);
    zelvar::XlsStream xls;
    xls.setStreamPtr(&in);
    xls.calcFileSize();
    unsigned counter = 0;
    xls.readHeader(counter);
    std::vector<Record> out;
    while (!xls.eof()) {
        uint16_t id = 0, size = 0;
        if (xls.readInt16(&id) < 2 || id == 0) break;
        xls.readInt16(&size);
        std::string payload(size, '\0');
        if (size && xls.read(&payload[0], size) < size) break;
        out.push_back({id, payload});
    }
    return out;
}

// A new container whose workbook stream is exactly these records.
inline std::string container(const std::vector<Record>& records) {
    zelvar::XlsStream xls;
    std::stringstream out(std::ios::in | std::ios::out | std::ios::binary);
    xls.setStreamPtr(&out);
    for (const auto& r : records) xls.write(r.id, r.payload.data(), static_cast<int>(r.payload.size()));
    xls.close();
    return out.str();
}

}  // namespace zvtest
