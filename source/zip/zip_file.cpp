#include "zip/zip_file.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "zip/zip_exception.h"

namespace zelvar {

CZipFile::~CZipFile() {
    if (m_hFile >= 0) ::close(m_hFile);
}

void CZipFile::ThrowErrno() const {
    int code = errno;
    throw CZipException(code > 0 && code < 200 ? code : CZipException::fileError, m_szFileName,
                        code);
}

void CZipFile::Open(const std::string& path, OpenMode mode) {
    Close();
    m_szFileName = path;
    int flags = mode == modeCreate ? O_RDWR | O_CREAT | O_TRUNC : O_RDONLY;
    m_hFile = ::open(path.c_str(), flags | O_CLOEXEC, 0666);
    if (m_hFile < 0) ThrowErrno();
    if (mode == modeRead) {
        // A directory opens read-only on Linux but cannot be read.
        struct stat info;
        if (::fstat(m_hFile, &info) == 0 && S_ISDIR(info.st_mode)) {
            ::close(m_hFile);
            m_hFile = -1;
            throw CZipException(EISDIR, m_szFileName, EISDIR);
        }
    }
}

unsigned CZipFile::Read(void* buffer, unsigned size) {
    char* out = static_cast<char*>(buffer);
    unsigned done = 0;
    while (done < size) {
        ssize_t got = ::read(m_hFile, out + done, size - done);
        if (got < 0) {
            if (errno == EINTR) continue;
            ThrowErrno();
        }
        if (got == 0) break;
        done += static_cast<unsigned>(got);
    }
    return done;
}

void CZipFile::Write(const void* buffer, unsigned size) {
    const char* in = static_cast<const char*>(buffer);
    unsigned done = 0;
    while (done < size) {
        ssize_t put = ::write(m_hFile, in + done, size - done);
        if (put < 0) {
            if (errno == EINTR) continue;
            ThrowErrno();
        }
        done += static_cast<unsigned>(put);
    }
}

uint64_t CZipFile::Seek(int64_t offset, int from) {
    int whence = from == begin ? SEEK_SET : from == current ? SEEK_CUR : SEEK_END;
    off_t at = ::lseek(m_hFile, static_cast<off_t>(offset), whence);
    if (at < 0) ThrowErrno();
    return static_cast<uint64_t>(at);
}

uint64_t CZipFile::GetPosition() const {
    off_t at = ::lseek(m_hFile, 0, SEEK_CUR);
    if (at < 0) ThrowErrno();
    return static_cast<uint64_t>(at);
}

uint64_t CZipFile::GetLength() const {
    struct stat info;
    if (::fstat(m_hFile, &info) != 0) ThrowErrno();
    return static_cast<uint64_t>(info.st_size);
}

void CZipFile::SetLength(uint64_t length) {
    if (::ftruncate(m_hFile, static_cast<off_t>(length)) != 0) ThrowErrno();
}

void CZipFile::Flush() {
    if (m_hFile >= 0 && ::fsync(m_hFile) != 0 && errno != EINVAL && errno != EROFS) ThrowErrno();
}

void CZipFile::Close() {
    if (m_hFile >= 0) {
        int rc = ::close(m_hFile);
        m_hFile = -1;
        if (rc != 0 && errno != EINTR) ThrowErrno();
    }
}

}  // namespace zelvar
