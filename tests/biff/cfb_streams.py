#!/usr/bin/python3
"""Lists the streams of compound files with an independent reader (python3-olefile).

For every file given: one line per stream, tab-separated: file, stream path, size, CRC-32 of the
bytes. A file the reader can't open gives one line: file, "!error", message.
"""
import sys
import zlib

import olefile

for path in sys.argv[1:]:
    try:
        ole = olefile.OleFileIO(path)
        for entry in ole.listdir(streams=True, storages=False):
            name = "/".join(entry)
            data = ole.openstream(entry).read()
            print("%s\t%s\t%d\t%d" % (path, name, len(data), zlib.crc32(data) & 0xFFFFFFFF))
        ole.close()
    except Exception as e:  # the reader's verdict is data for the caller
        print("%s\t!error\t%s" % (path, str(e).replace("\t", " ").replace("\n", " ")))
