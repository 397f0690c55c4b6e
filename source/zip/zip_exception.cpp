#include "zip/zip_exception.h"

#include <cstring>
#include <zlib.h>

namespace zelvar {

namespace {

// The file layer's own texts for the errno values a package can meet.
const char* errnoText(int code) {
    switch (code) {
        case 2: return "No such file or directory.";
        case 5: return "I/O error.";
        case 13: return "Permission denied.";
        case 21: return "Is a directory.";
        case 22: return "Invalid argument.";
        case 24: return "Too many open files.";
        case 27: return "File too large.";
        case 28: return "No space left on device.";
        case 30: return "Read-only file system.";
        default: return nullptr;
    }
}

std::string describe(int cause, int systemError) {
    switch (cause) {
        case CZipException::badZipFile: return "Damaged or not a zip file.";
        case CZipException::badCrc: return "Crc is mismatched.";
        case CZipException::tooLongData:
            return "The filename, the comment or local or central extra field of the file added to "
                   "the archive is too long.";
        case CZipException::tooBigSize: return "The file size is too large to be supported.";
        case CZipException::badPassword:
            return "An incorrect password set for the file being decrypted.";
        case CZipException::internalError: return "An internal error.";
        case CZipException::fileError:
            return std::string("A file error occurred (") + std::strerror(systemError) + ").";
        case CZipException::cdirNotFound:
            return "The central directory was not found in the archive (or you were trying to open "
                   "not the last volume of a segmented archive).";
        case CZipException::noZip64:
            return "The Zip64 central directory signature was not found in the archive where "
                   "expected.";
        case CZipException::bytesBeforeInZip64:
            return "The number of bytes before a zip archive must be zero in the Zip64 format.";
        case CZipException::streamEnd: return "Zlib library error (end of stream).";
        case CZipException::errNo: return "Zlib library error (errno).";
        case CZipException::streamError: return "Zlib library error (stream error).";
        case CZipException::dataError: return "Zlib library error (data error).";
        case CZipException::memError: return "Not enough memory.";
        case CZipException::bufError: return "Zlib library error (buffer error).";
        case CZipException::versionError: return "Zlib library error (version error).";
        default: break;
    }
    if (cause > 0 && cause < 200) {
        if (const char* text = errnoText(cause)) return text;
        return std::string(std::strerror(cause)) + ".";
    }
    return "Unknown error.";
}

}  // namespace

CZipException::CZipException(int cause, std::string fileName, int systemError)
    : m_iCause(cause), m_szFileName(std::move(fileName)), m_iSystemError(systemError),
      m_szDescription(describe(cause, systemError)) {}

std::string CZipException::GetErrorDescription() const { return m_szDescription; }

void CZipException::Throw(int cause, const std::string& fileName) {
    throw CZipException(cause, fileName);
}

void CZipException::ThrowZlib(int zlibResult) {
    // zlib's codes run from Z_STREAM_END (1) down to Z_VERSION_ERROR (-6); the engine's
    // causes 500..507 follow them in the same order.
    if (zlibResult == Z_NEED_DICT) Throw(dataError);
    Throw(zlibBase - zlibResult);
}

}  // namespace zelvar
