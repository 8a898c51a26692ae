#ifndef ZR_TEST_HTTP_SERVER_H
#define ZR_TEST_HTTP_SERVER_H

#include <string>
#include <sys/types.h>

namespace ZrTest {

// The python test server (tests/data/zr_http_test_server.py) serving a directory on 127.0.0.1 on a free
// port, started by the constructor and stopped by the destructor. The server also ends by itself when
// the test process goes away or after two minutes, so it never outlives a crashed test for long.
class HttpServer {
 public:
  explicit HttpServer(const std::string& directory);
  ~HttpServer();
  HttpServer(const HttpServer&) = delete;
  HttpServer& operator=(const HttpServer&) = delete;

  bool running() const { return m_thePort > 0; }
  int port() const { return m_thePort; }
  std::string url(const std::string& path) const;  // path without the leading "/"

 private:
  pid_t m_thePid;
  int m_theStdin;  // closing it tells the server to end
  int m_thePort;
};

// A port on 127.0.0.1 where nothing listens (bound once, then released).
int unusedPort();

}  // namespace ZrTest

#endif
