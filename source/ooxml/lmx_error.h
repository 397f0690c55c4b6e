// Status codes of the XML reader and writer, their texts, and the record of the first failure.
// This layer reports failure by status codes; the package layer turns them into zverror.
#pragma once
#include <iosfwd>
#include <string>

namespace zelvar {
namespace lmx {

enum elmx_error {
    ELMX_OK = 0,
    ELMX_UNABLE_TO_OPEN_FILE = 1,
    ELMX_ALL_CARDINALITY_VIOLATION = 2,
    ELMX_ATTRIBUTE_ALREADY_READ = 3,
    ELMX_ATTRIBUTES_IN_ANONYMOUS_COMPOSITOR = 4,
    ELMX_BADLY_FORMED = 5,
    ELMX_BAD_CHAR_ENCODING = 6,
    ELMX_BAD_CHOICE = 7,
    ELMX_BAD_COMMENT = 8,
    ELMX_BAD_DTD = 9,
    ELMX_BAD_END_OF_ELEMENT = 10,
    ELMX_BAD_END_TAG = 11,
    ELMX_BAD_END_TAG_SYNTAX = 12,
    ELMX_BAD_XML_DECL = 13,
    ELMX_BAD_XML_VERSION = 14,
    ELMX_ENCODING_MISMATCH = 15,
    ELMX_ELEMENT_NOT_FOUND = 16,
    ELMX_EXTERNAL_ENTITY = 17,
    ELMX_FRACTION_DIGITS_EXCEEDED = 18,
    ELMX_LENGTH_TOO_LONG = 19,
    ELMX_LENGTH_TOO_SHORT = 20,
    ELMX_MANDATORY_ELEMENT_MISSING = 21,
    ELMX_NO_PATTERN_MATCHED = 22,
    ELMX_NOT_WELL_FORMED = 23,
    ELMX_RECURSIVE_ENTITY = 24,
    ELMX_REQUIRED_ATTRIBUTES_MISSING = 25,
    ELMX_OCCURRENCE_ERROR = 26,
    ELMX_TOTAL_DIGITS_EXCEEDED = 27,
    ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE = 28,
    ELMX_UNABLE_TO_READ_ELEMENT_VALUE = 29,
    ELMX_UNKNOWN_ELEMENT_IN_ALL = 30,
    ELMX_UNKNOWN_ELEMENT_IN_COMPLEX_CONTENT = 31,
    ELMX_UNEXPECTED_EMPTY_ELEMENT = 32,
    ELMX_UNEXPECTED_ENTITY = 33,
    ELMX_UNEXPECTED_EOM = 34,
    ELMX_VALUE_BAD_FORMAT = 35,
    ELMX_VALUE_EXCEEDS_MAX = 36,
    ELMX_VALUE_EXCEEDS_MIN = 37,
    ELMX_VALUE_NOT_ENUMERATED = 38,
    ELMX_UNEXPECTED_ATTRIBUTE = 39,
    ELMX_NILLED_ELEMENT_NOT_EMPTY = 40,
    ELMX_ENTITY_NOT_FOUND = 41,
    ELMX_UNDEFINED_ERROR = 42,
    ELMX_VALUE_DOES_NOT_MATCH_FIXED_CONSTRAINT = 43,
    ELMX_UNKNOWN_XSI_TYPE = 44,
    ELMX_TYPE_NOT_SET = 45,
    ELMX_OCCURS_ERROR_ON_MARSHAL = 46,
    ELMX_USER_DEFINED_1 = 1000,
    ELMX_USER_DEFINED_2,
    ELMX_USER_DEFINED_3,
    ELMX_USER_DEFINED_4,
    ELMX_USER_DEFINED_5,
    ELMX_USER_DEFINED_6,
    ELMX_USER_DEFINED_7,
    ELMX_USER_DEFINED_8,
    ELMX_USER_DEFINED_9
};

struct s_error_description {
    elmx_error code;
    const char* text;
};

// Closed by a row with a null text.
extern const s_error_description mc_error_description[];

// The text of a code; an empty text for a code that is not in the table.
const char* get_error_description(elmx_error code);
inline const char* get_error_description(int code) {
    return get_error_description(static_cast<elmx_error>(code));
}

// The first detail of a failure. item_name holds the item that failed or, for a fault of the
// input itself, the reader's explanation ("Premature end of file encountered").
struct s_debug_error {
    elmx_error error = ELMX_OK;
    std::string item_name;
    std::string code_file;
    int code_line = 0;
    std::string source_id;

    void clear() { *this = s_debug_error(); }
    std::string to_string() const;
    std::ostream& to_stream(std::ostream& os) const;
};

// The error that the input layer met, with its explanation; kept until the reader reports it.
class c_error {
public:
    void set(elmx_error code, std::string text) {
        if (m_code == ELMX_OK) {
            m_code = code;
            m_text = std::move(text);
        }
    }
    elmx_error code() const { return m_code; }
    const std::string& text() const { return m_text; }
    bool is_set() const { return m_code != ELMX_OK; }
    void clear() {
        m_code = ELMX_OK;
        m_text.clear();
    }

private:
    elmx_error m_code = ELMX_OK;
    std::string m_text;
};

}  // namespace lmx
}  // namespace zelvar
