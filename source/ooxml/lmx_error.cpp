#include "ooxml/lmx_error.h"

#include <ostream>
#include <sstream>

namespace zelvar {
namespace lmx {

const s_error_description mc_error_description[] = {
    {ELMX_OK, "No Error"},
    {ELMX_UNABLE_TO_OPEN_FILE, "Unable to open file"},
    {ELMX_ALL_CARDINALITY_VIOLATION, "Violation of xs:all cardinality constraints"},
    {ELMX_ATTRIBUTE_ALREADY_READ, "Attribute has already been read"},
    {ELMX_ATTRIBUTES_IN_ANONYMOUS_COMPOSITOR, "Attributes found in anonymous compositor"},
    {ELMX_BADLY_FORMED, "XML badly formed"},
    {ELMX_BAD_CHAR_ENCODING, "XML character encoding not supported"},
    {ELMX_BAD_CHOICE, "Inappropriate choice option selected"},
    {ELMX_BAD_COMMENT, "Badly formed comment"},
    {ELMX_BAD_DTD, "Badly formed DTD"},
    {ELMX_BAD_END_OF_ELEMENT, "Bad end of element"},
    {ELMX_BAD_END_TAG, "Bad start tag end"},
    {ELMX_BAD_END_TAG_SYNTAX, "Syntax error in end tag"},
    {ELMX_BAD_XML_DECL, "Bad XML Decl spec"},
    {ELMX_BAD_XML_VERSION, "Unsupported XML version"},
    {ELMX_ENCODING_MISMATCH, "Mis-match between specified char encoding and read bytes"},
    {ELMX_ELEMENT_NOT_FOUND, "Element not found"},
    {ELMX_EXTERNAL_ENTITY, "Reference to external entity"},
    {ELMX_FRACTION_DIGITS_EXCEEDED, "Fraction digits exceeded"},
    {ELMX_LENGTH_TOO_LONG, "Length too long"},
    {ELMX_LENGTH_TOO_SHORT, "Length too short"},
    {ELMX_MANDATORY_ELEMENT_MISSING, "Mandatory element missing"},
    {ELMX_NO_PATTERN_MATCHED, "No pattern matched"},
    {ELMX_NOT_WELL_FORMED, "Not well formed"},
    {ELMX_RECURSIVE_ENTITY, "Recursive entity definition"},
    {ELMX_REQUIRED_ATTRIBUTES_MISSING, "Required attribute(s) missing"},
    {ELMX_OCCURRENCE_ERROR, "Element instances exceeds maxOccurs"},
    {ELMX_TOTAL_DIGITS_EXCEEDED, "Total digits exceeded"},
    {ELMX_UNABLE_TO_READ_ATTRIBUTE_VALUE, "Unable to read attribute value"},
    {ELMX_UNABLE_TO_READ_ELEMENT_VALUE, "Unable to read element value"},
    {ELMX_UNKNOWN_ELEMENT_IN_ALL, "Unknown element in xs:all"},
    {ELMX_UNKNOWN_ELEMENT_IN_COMPLEX_CONTENT, "Unknown element in complexContent"},
    {ELMX_UNEXPECTED_EMPTY_ELEMENT, "Unexpected empty element"},
    {ELMX_UNEXPECTED_ENTITY, "Unexpected entity"},
    {ELMX_UNEXPECTED_EOM, "Unexpected end of message"},
    {ELMX_VALUE_BAD_FORMAT, "Invalid value format for this type"},
    {ELMX_VALUE_EXCEEDS_MAX, "Value greater than specified maximum"},
    {ELMX_VALUE_EXCEEDS_MIN, "Value less than specified minimum"},
    {ELMX_VALUE_NOT_ENUMERATED, "Value does not match enumerations"},
    {ELMX_UNEXPECTED_ATTRIBUTE, "Unexpected attribute"},
    {ELMX_NILLED_ELEMENT_NOT_EMPTY, "Nilled element body not empty"},
    {ELMX_ENTITY_NOT_FOUND, "Entity not found"},
    {ELMX_UNDEFINED_ERROR, "Undefined error"},
    {ELMX_VALUE_DOES_NOT_MATCH_FIXED_CONSTRAINT, "Value does not match specified fixed constraint"},
    {ELMX_UNKNOWN_XSI_TYPE, "Unknown xsi:type"},
    {ELMX_TYPE_NOT_SET, "Type not set"},
    {ELMX_OCCURS_ERROR_ON_MARSHAL, "min/max occurs error on marshaling"},
    {ELMX_USER_DEFINED_1, "User defined error 1"},
    {ELMX_USER_DEFINED_2, "User defined error 2"},
    {ELMX_USER_DEFINED_3, "User defined error 3"},
    {ELMX_USER_DEFINED_4, "User defined error 4"},
    {ELMX_USER_DEFINED_5, "User defined error 5"},
    {ELMX_USER_DEFINED_6, "User defined error 6"},
    {ELMX_USER_DEFINED_7, "User defined error 7"},
    {ELMX_USER_DEFINED_8, "User defined error 8"},
    {ELMX_USER_DEFINED_9, "User defined error 9"},
    {ELMX_OK, nullptr}};

const char* get_error_description(elmx_error code) {
    for (const s_error_description* row = mc_error_description; row->text; ++row)
        if (row->code == code) return row->text;
    return "";
}

std::ostream& s_debug_error::to_stream(std::ostream& os) const {
    os << "error " << static_cast<int>(error) << " (" << get_error_description(error) << ")";
    if (!item_name.empty()) os << ": " << item_name;
    if (!code_file.empty()) os << " [" << code_file << ":" << code_line << "]";
    if (!source_id.empty()) os << " in " << source_id;
    return os;
}

std::string s_debug_error::to_string() const {
    std::ostringstream os;
    to_stream(os);
    return os.str();
}

}  // namespace lmx
}  // namespace zelvar
