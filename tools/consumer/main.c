/* Writes a cell, saves to memory, loads it again and prints the value: the flat C layer works. */
#include <stdio.h>
#include <string.h>

#include "zelvar_c.h"

int main(void) {
    BookHandle book = zvCreateBookA();
    BookHandle copy = zvCreateBookA();
    const char* data = NULL;
    unsigned size = 0;
    int ok = book && copy;
    ok = ok && zvSheetWriteNumA(zvBookAddSheetA(book, "C", NULL), 0, 0, 42.0, NULL);
    ok = ok && zvBookSaveRawA(book, &data, &size) && zvBookLoadRawA(copy, data, size);
    ok = ok && zvSheetReadNumA(zvBookGetSheetA(copy, 0), 0, 0, NULL) == 42.0;
    printf("%s\n", ok ? "consumer ok" : (book ? zvBookErrorMessageA(book) : "no book"));
    if (book) zvBookReleaseA(book);
    if (copy) zvBookReleaseA(copy);
    return ok ? 0 : 1;
}
