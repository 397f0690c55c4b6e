#include "biff/record_ids.h"

#include <algorithm>
#include <iterator>

namespace zelvar {

namespace {
const RecordIdName kTable[] = {
#define ZELVAR_RECORD_ID(name, id) {id, #name},
    ZELVAR_RECORD_IDS(ZELVAR_RECORD_ID)
#undef ZELVAR_RECORD_ID
};
}  // namespace

const RecordIdName* recordIdTable(size_t* count) {
    *count = std::size(kTable);
    return kTable;
}

const char* recordName(uint16_t id) {
    auto at = std::lower_bound(std::begin(kTable), std::end(kTable), id,
                               [](const RecordIdName& entry, uint16_t wanted) { return entry.id < wanted; });
    return at != std::end(kTable) && at->id == id ? at->name : nullptr;
}

}  // namespace zelvar
