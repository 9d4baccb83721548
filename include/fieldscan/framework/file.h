// CFile: a byte file.
#ifndef FIELDSCAN_FRAMEWORK_FILE_H
#define FIELDSCAN_FRAMEWORK_FILE_H

#include <fieldscan/framework/string.h>

// A file of bytes, open from Open to Close. Reads go through a buffer, so reading byte by byte costs little;
// writes go to the system at once. Paths: docs/architecture.md, Paths.
//
// A file that is open for writing belongs to this object. A second writer, also in another thread or program,
// tries again for about a second and then gets causeSharingViolation. On POSIX systems that holds between
// users of this library (flock), and readers see what is written as it comes; on Windows it holds for every
// program, and readers wait too.
//
// Every operation returns 1 for success and 0 for failure unless it says otherwise; on a file that is not
// open they fail. Nothing is thrown. The destructor closes.
class FIELDSCAN_API CFile {
public:
    // Mode bits for Open, combined with |:
    //   modeRead                                   an existing file, for reading
    //   modeWrite                                  an existing file, for writing, contents kept
    //   modeReadWrite                              an existing file, for both
    //   modeCreate | modeWrite                     made or emptied, for writing
    //   modeCreate | modeReadWrite                 made or emptied, for both
    //   modeCreate | modeNoTruncate | modeWrite    made if missing, contents kept, for writing
    // The position is the start of the file.
    enum Mode : unsigned int {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000
    };

    // Why the last Open failed.
    enum Cause {
        causeNone,              // it did not fail
        causeNotFound,          // no such file, or a folder of the path is missing
        causeAccessDenied,      // no right to it, write protected, or a folder
        causeSharingViolation,  // another writer holds it
        causeOther              // also a pipe, and a device that is to be read: it may have no end
    };

    CFile();
    ~CFile();
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;

    // Closes a file that was open. An empty path, or one with a zero unit inside, fails with causeOther.
    int Open(const CString& path, unsigned int mode);
    Cause GetOpenFailure() const { return m_cause; }  // of the last Open
    bool IsOpen() const;                              // whether it may be read or written

    // Up to `count` bytes from the position on; returns how many were read, fewer than `count` only at the
    // end of the file or when the medium fails.
    unsigned int Read(void* buffer, unsigned int count);
    // The next line with its line feed, which the last line of a file may lack: `length` bytes, not closed by
    // a zero. They lie in the file's buffer until the next read, write or move of the position. Returns 0,
    // with `length` 0, at the end of the file and when a read fails. A line of more than 16 MiB is a failed
    // read, as is one for which there is no memory.
    int ReadLine(const char*& line, unsigned int& length);
    // True if a read since Open failed, other than by the end of the file. All further ones fail then.
    bool HasReadFailed() const { return m_readFailed; }
    // All `count` bytes, or 0: part of them may then be on the medium.
    int Write(const void* buffer, unsigned int count);

    int SeekToBegin();              // position 0
    int SeekToEnd();                // behind the last byte
    long long GetPosition() const;  // -1 when it cannot be told
    long long GetLength() const;    // in bytes, -1 when it cannot be told

    // What was written is on the medium, not only with the system, when this returns 1. After a 0 a second
    // call says nothing: the system may have dropped what it could not write.
    int Flush();
    // 0 when the system reports that something written before was lost; the file is closed all the same.
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
