// eml2folder FILE.eml FOLDER: unpacks a mail message into a message folder (FORMAT.md).

#include <cstdio>
#include <exception>

#include "mail/read_message.h"
#include "mail/write_folder.h"

int main(int argc, char** argv) {
  if (argc != 3 || argv[1][0] == '\0' || argv[2][0] == '\0') {
    std::fputs("usage: eml2folder FILE.eml FOLDER\n", stderr);
    return 1;
  }
  using namespace postrove::mail;
  try {
    WriteFolder(ReadMessage(argv[1]), argv[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "eml2folder: %s\n", error.what());
    return 1;
  }
  return 0;
}
