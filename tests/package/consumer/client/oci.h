#pragma once
// What a database client's header brings: the names that the library knows too, one of them as a macro.

#define OCI_HTYPE_ERROR 2
#define OCI_ERROR -1

typedef signed int sword;
typedef unsigned int ub4;
typedef signed int sb4;
typedef unsigned char OraText;

extern "C" sword OCIErrorGet(void* hndlp, ub4 recordno, OraText* sqlstate, sb4* errcodep, OraText* bufp, ub4 bufsiz,
                             ub4 type);
