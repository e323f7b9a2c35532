// The configuration tree: values of an XML file, addressed by paths of element names.
//
// A path is a run of `const char*` element names, the top element first, ended by a null pointer:
//   xmlcfg_get_str(tree, "", buffer, sizeof(buffer), "device", "device_000", "type", nullptr)
// What the library relies on:
//  - A value stored at a path reads back unchanged from the same path, whatever its bytes.
//  - A read copies into a buffer of the stated size in bytes, the terminator included, and cuts a
//    longer value to fit; without a value at the path it copies the default.
//  - A handle belongs to the thread that opened it, until it is closed. Any number of handles
//    may be open at once; changes are in the file once xmlcfg_close has returned true.
//
// The embedded platform:
//  - A value is the text of the element at the path; the first element of a name counts. An element
//    without text has the empty value. In an element that contains more than plain text (elements,
//    comments, CDATA sections), whitespace around the text is layout and no part of the value.
//    Storing replaces the text and nothing else.
//  - The file contains values as plain XML for other programs too. What XML cannot carry (control
//    characters, broken UTF-8) is stored in Base64, its element marked encoding="base64".
//  - What is not changed is saved as it was read: values, comments, unknown elements, attributes,
//    order, line ends, indentation. New elements follow the layout of their neighbours. Anywhere in
//    a file that was changed, three things may not be kept: spacing inside tags, the kind of
//    quotation marks, and the form of an empty element.
//  - Not opened (null and one log line), and so never overwritten: a file that does not exist,
//    cannot be read (for change: written) or is not a regular file; that is not well-formed XML 1.0
//    in UTF-8; that has a document type, is larger than kMaxTreeFileBytes, or is nested deeper than
//    kMaxTreeDepth. A file without an element, be it empty or just the XML declaration, is an empty
//    tree.
//  - A path with another top element than the file's finds nothing and stores nothing; an empty
//  tree
//    takes the first top element that is stored. An element name that XML does not allow, or with a
//    colon, is not created. A path has at most kMaxTreeDepth names. Refusals to store are logged.
//  - A handle opened for change holds an advisory lock on the file PATH.lock until it is closed.
//  The
//    lock file is created with the file's permissions and never removed. The wait for the lock ends
//    after kTreeLockWaitMs, and then the open fails. A reader takes no lock and never writes: it
//    sees the old file or the new one.
//  - A save writes the new file PATH.saving, syncs it, replaces the old one in one step and syncs
//    the directory; mode and owner are kept. Nothing is written when nothing changed. A save that
//    fails leaves the old file as it is and a log line; so does one that would exceed
//    kMaxTreeFileBytes, and one that cannot give the new file the old one's owner.
//  - A copy that is passed for a handle, or a handle for a copy, is taken for null.
//  - Of a symbolic link, the file that it points to is locked and replaced, and the link is kept.
// Log lines of the embedded tree carry the tag "[cfgtree]".
#pragma once

#include "platform/config_tree_limits.h"
#include "platform/export.h"

extern "C" {

enum TCfgMode { kCfgRead = 0, kCfgChange = 1 };

// Opens the file at `path`. Returns a handle, or null when it cannot be opened as a tree.
ORVANEIP_API void* xmlcfg_open(TCfgMode mode, const char* path);

// Saves the changes when `save` is true, and releases the handle. Returns false when the save
// failed, and only then. Null is ignored.
ORVANEIP_API bool xmlcfg_close(void* handle, bool save);

// Copies the value at the path into `buffer`. Returns true when there was one, false for the
// default.
ORVANEIP_API bool xmlcfg_get_str(void* handle, const char* default_value, char* buffer,
                                 int size_bytes, ...);

// Returns the value as a decimal integer (as strtol reads it, limited to the range of int), or the
// default when there is no value or it does not begin with a number.
ORVANEIP_API int xmlcfg_get_int(void* handle, int default_value, ...);

// Returns the value as a boolean: "true", "yes", "on", "1" and "false", "no", "off", "0" in any
// letter case; for anything else the default.
ORVANEIP_API bool xmlcfg_get_bool(void* handle, bool default_value, ...);

// Stores the value at the path, creating the elements that do not exist. Returns false when it was
// not stored, and then nothing is changed: a handle opened for reading, a name that is not allowed,
// another top element, a null value.
ORVANEIP_API bool xmlcfg_set_str(void* handle, const char* value, ...);

// Removes the element at the path with everything under it. Returns true when there was one and the
// handle was opened for change.
ORVANEIP_API bool xmlcfg_remove(void* handle, ...);

// Returns a read-only copy of the subtree at the path, which stays valid after the handle is
// closed; null on failure. Its own name is the first element of every path into it. Any number of
// threads may read it at once. Released with xmltree_destroy.
ORVANEIP_API void** xmlcfg_export_xmltree(void* handle, ...);

// As xmlcfg_get_str and xmlcfg_get_int. A null tree has no values.
ORVANEIP_API bool xmltree_get_str(void** tree, const char* default_value, char* buffer,
                                  int size_bytes, ...);
ORVANEIP_API int xmltree_get_int(void** tree, int default_value, ...);

// Releases a copy. Null is ignored.
ORVANEIP_API void xmltree_destroy(void** tree);

}  // extern "C"
