# order.awk -v root=DIRECTORY -v acknowledged=COUNT TRACE (of strace -f -y): fails unless there are
# COUNT acknowledgements (writes to standard output), and below DIRECTORY
#  - what is written, and the directory of a new name, is synced before that and before the end,
#  - a file before it takes another one's name, a database's log before the database and the other
#    way round; a journal that is not needed any more is gone for good.
# Shared memory (-shm) and lock files contain nothing to be kept.
function fail(what) { print "line " NR ": " what ": " $0; failed = 1 }
function directory_of(path) { sub(/\/[^\/]*$/, "", path); return path }
function entered(path) { known[path] = 1; unsynced[directory_of(path)] = path }
function quoted(n) { split($0, parts, "\""); return parts[2 * n] }

{
  match($0, /\([0-9]+<[^>]*>/)
  file = RSTART ? substr($0, RSTART + 1, RLENGTH - 2) : ""
  to_program = file ~ /^1</
  sub(/^[0-9]+</, "", file)
}
$2 ~ /^write\(/ && to_program || / \+\+\+ exited with 0/ {
  for (path in unsynced) {
    fail(path " is not synced")
  }
  count += to_program
  next
}
/ = -1 / || index($0, root) == 0 || /-shm[">]|\.lock[">]/ { next }
$2 ~ /^p?write/ || $2 ~ /^ftruncate/ {
  database_of = file
  sub(/-wal$/, "", database_of)
  if (file "-wal" in unsynced || file "-journal" in unsynced ||
      (database_of != file && database_of in unsynced)) {
    fail("written too early")
  }
}
$2 ~ /^p?write/ { unsynced[file] = file }
$2 ~ /sync/ { delete unsynced[file] }
$2 ~ /^open/ && /O_CREAT/ && !(quoted(1) in known) { entered(quoted(1)) }
$2 ~ /^mk/ { entered(quoted(1)) }
$2 ~ /^(rename|link)/ {
  if (quoted(1) in unsynced) {
    fail("takes another name too early")
  }
  entered(quoted(2))
}
$2 ~ /^unlink/ { delete unsynced[quoted(1)]; delete known[quoted(1)] }
$2 ~ /^unlink/ && quoted(1) ~ /-journal$/ { unsynced[directory_of(quoted(1))] = quoted(1) }
END {
  if (count != acknowledged) {
    print count + 0 " acknowledgements instead of " acknowledged
  }
  exit failed || count != acknowledged
}
