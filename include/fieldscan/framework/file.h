// CFile: a byte file.
#ifndef FIELDSCAN_FRAMEWORK_FILE_H
#define FIELDSCAN_FRAMEWORK_FILE_H

#include <fieldscan/framework/string.h>

// A file of bytes, open from Open to Close. Reads go through a buffer, so that single bytes cost little;
// writes go to the system at once. Paths: docs/architecture.md, Paths.
//
// A file that is open for writing belongs to this object. A second writer, in any thread or program, tries
// again for about a second and then gets causeSharingViolation. On POSIX systems this holds among users of
// this library (flock), and readers see data as soon as it is written; on Windows it holds for every program,
// and readers wait too.
//
// Operations return 1 for success and 0 for failure unless they say otherwise, and fail on a file that is not
// open. Nothing is thrown. The destructor closes.
class FIELDSCAN_API CFile {
public:
    // Mode bits for Open, combined with |:
    //   modeRead                                   an existing file, for reading
    //   modeWrite                                  an existing file, for writing, contents kept
    //   modeReadWrite                              an existing file, for both
    //   modeCreate | modeWrite                     made or emptied, for writing
    //   modeCreate | modeReadWrite                 made or emptied, for both
    //   modeCreate | modeNoTruncate | modeWrite    made if missing, contents kept, for writing
    // Opening puts the position at the start.
    enum Mode : unsigned int {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000
    };

    // Why the last Open failed.
    enum Cause {
        causeNone,              // it succeeded
        causeNotFound,          // no such file, or a folder of the path is missing
        causeAccessDenied,      // no right to it, write-protected, or a folder
        causeSharingViolation,  // another writer has it
        causeOther              // includes a pipe, and a device opened for reading, which may have no end
    };

    CFile();
    ~CFile();
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    // Closes the file if one is open, then opens. An empty path, or one with a zero unit inside, fails with
    // causeOther.
    [[nodiscard]] int Open(const CString& path, unsigned int mode);
    Cause GetOpenFailure() const { return m_cause; }  // of the last Open
    bool IsOpen() const;                              // true between Open and Close

    // Up to `count` bytes from the position on; returns how many were read, fewer than `count` only at the
    // end of the file or when the medium fails.
    unsigned int Read(void* buffer, unsigned int count);
    // The next line with its line feed, which the last line of a file may lack: `length` bytes, not closed by
    // a zero. They lie in the file's buffer until the next read, write or move of the position. Returns 0,
    // with `length` 0, at the end of the file and when a read fails. A line of more than 16 MiB is a failed
    // read, as is one for which there is no memory.
    [[nodiscard]] int ReadLine(const char*& line, unsigned int& length);
    // True if a read since Open failed, other than by the end of the file. All further ones fail then.
    bool HasReadFailed() const { return m_readFailed; }
    // Writes all `count` bytes. After a 0 a part of them may be in the file.
    [[nodiscard]] int Write(const void* buffer, unsigned int count);

    int SeekToBegin();              // position 0
    int SeekToEnd();                // position after the last byte
    long long GetPosition() const;  // in bytes, -1 on failure
    long long GetLength() const;    // in bytes, -1 on failure

    // Brings what was written to the medium, not only to the system. After a 0 the result of a second call is
    // meaningless: the system may have dropped what it could not write.
    [[nodiscard]] int Flush();
    // Closes, in any case. 0 also when the system reports the loss of something written before.
    int Close();

private:
    bool fill();
    bool dropBuffer();

    long long m_handle;  // -1 when not open
    Cause m_cause;
    bool m_readFailed;
    char* m_buffer;
    unsigned int m_room;  // bytes of the buffer
    unsigned int m_next;  // the unread part of it: m_next .. m_end - 1
    unsigned int m_end;
};

#endif
