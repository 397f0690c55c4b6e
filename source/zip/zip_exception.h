// The archive engine's failure: a numeric cause and the file it concerns. Causes below 200
// are errno values of the file layer; the rest are the engine's own.
#pragma once
#include <exception>
#include <string>

namespace zelvar {

class CZipException : public std::exception {
public:
    enum ZipErrors {
        noError = 0,
        badZipFile = 201,
        badCrc = 202,
        tooLongData = 211,
        tooBigSize = 212,
        badPassword = 213,
        internalError = 215,
        fileError = 216,
        cdirNotFound = 221,
        noZip64 = 222,
        bytesBeforeInZip64 = 223,
        streamEnd = 500,
        zlibBase = 501,  // cause = zlibBase - zlib result
        errNo = 502,
        streamError = 503,
        dataError = 504,
        memError = 505,
        bufError = 506,
        versionError = 507,
    };

    explicit CZipException(int cause, std::string fileName = std::string(), int systemError = 0);

    // Raises a zlib result as the matching engine cause (Z_OK never gets here).
    [[noreturn]] static void ThrowZlib(int zlibResult);
    [[noreturn]] static void Throw(int cause, const std::string& fileName = std::string());

    std::string GetErrorDescription() const;
    const char* what() const noexcept override { return m_szDescription.c_str(); }

    int m_iCause;
    std::string m_szFileName;
    int m_iSystemError;  // errno at the time of a fileError

private:
    std::string m_szDescription;
};

}  // namespace zelvar
