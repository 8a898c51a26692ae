#include <ZrIfHttpStream.h>
#include <ZrTestHttpServer.h>
#include <ZrTestSupport.h>
#include <gtest/gtest.h>

#include <chrono>
#include <iterator>
#include <memory>
#include <string>

namespace {

const char* const theDocument = "<?xml version=\"1.0\"?>\n<robot name=\"r1\">\n  <arm/>\n</robot>\n";

// One server for the whole suite; short time-outs so that the failure cases stay quick.
class ZrIfHttpStreamTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_theDirectory = new ZrTest::TempDir;
    s_theDirectory->write("doc.xml", theDocument);
    s_theServer = new ZrTest::HttpServer(s_theDirectory->path());
  }
  static void TearDownTestSuite() {
    delete s_theServer;
    delete s_theDirectory;
  }
  void SetUp() override {
    ASSERT_TRUE(s_theServer->running()) << "python3 test server did not start";
    ZrIfHttpStream::setDefaultConnectTimeoutMs(2000);
    ZrIfHttpStream::setDefaultStallTimeoutMs(1000);
    ZrIfHttpStream::setDefaultTimeoutMs(8000);
    ZrIfHttpStream::setDefaultMaxBodySize(0);
  }
  void TearDown() override {
    ZrIfHttpStream::setDefaultConnectTimeoutMs(10000);
    ZrIfHttpStream::setDefaultStallTimeoutMs(30000);
    ZrIfHttpStream::setDefaultTimeoutMs(600000);
    ZrIfHttpStream::setDefaultMaxBodySize(1ull << 30);
    ZrIfHttpStream::setDefaultAllowedHosts({});
  }

  static std::string url(const std::string& path) { return s_theServer->url(path); }
  static std::string readAll(std::istream& in) {
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

  static ZrTest::TempDir* s_theDirectory;
  static ZrTest::HttpServer* s_theServer;
};

ZrTest::TempDir* ZrIfHttpStreamTest::s_theDirectory = nullptr;
ZrTest::HttpServer* ZrIfHttpStreamTest::s_theServer = nullptr;

TEST_F(ZrIfHttpStreamTest, DeliversADocumentAndFollowsRedirects) {
  for (const char* path : {"doc.xml", "redirect/doc.xml"}) {
    ZrTest::PrintCapture capture;
    ZrIfHttpStream in(url(path).c_str(), std::ios::in);
    ASSERT_FALSE(in.fail()) << path << capture.all();
    EXPECT_EQ(in.status(), 200);
    EXPECT_EQ(readAll(in), theDocument);
    EXPECT_FALSE(in.bad());
    EXPECT_EQ(capture.count(), 0u) << capture.all();
  }
}

// The test server answers as 127.0.0.1 and as localhost; only the first is allowed here.
TEST_F(ZrIfHttpStreamTest, OnlyAllowedHostsAreReachedAlsoThroughRedirects) {
  ZrIfHttpStream::setDefaultAllowedHosts({"127.0.0.1"});
  const std::string other = "localhost:" + std::to_string(s_theServer->port());
  const struct {
    std::string url;
    const char* refusal;  // fragment of the message, or null when the document arrives
  } rows[] = {
      {url("doc.xml"), nullptr},
      {url("redirect/doc.xml"), nullptr},
      {url("redirect-host/localhost/doc.xml"), "a redirect to the host localhost, which is not among the allowed hosts."},
      {"http://" + other + "/doc.xml", "the host localhost is not among the allowed hosts."},
  };
  for (const auto& row : rows) {
    ZrTest::PrintCapture capture;
    ZrIfHttpStream in(row.url.c_str(), std::ios::in);
    if (!row.refusal) {
      EXPECT_EQ(readAll(in), theDocument) << row.url << capture.all();
    } else {
      EXPECT_TRUE(in.fail()) << row.url;
      EXPECT_TRUE(capture.contains(row.refusal)) << row.url << "\n" << capture.all();
    }
  }
  ZrIfHttpStream::setDefaultAllowedHosts({"LOCALHOST"});  // host names compare without regard to case
  ZrTest::PrintCapture capture;
  ZrIfHttpStream in(("http://" + other + "/doc.xml").c_str(), std::ios::in);
  EXPECT_EQ(readAll(in), theDocument) << capture.all();
}

TEST_F(ZrIfHttpStreamTest, FailsAtConstructionWithAReason) {
  const std::string refused = "http://127.0.0.1:" + std::to_string(ZrTest::unusedPort()) + "/doc.xml";
  const struct {
    std::string url;
    const char* why;
  } rows[] = {
      {url("missing.xml"), "status 404"},
      {url("status/500"), "status 500"},
      {url("stall-headers"), "no data received for 1000 milliseconds"},
      {refused, "URL: "},
      {"http://zr-no-such-host.invalid/doc.xml", "URL: "},
      {"file:///etc/hostname", "URL: "},  // only HTTP may be reached from a document
      {"", "no URL given"},
  };
  for (const auto& row : rows) {
    ZrTest::PrintCapture capture;
    const auto start = std::chrono::steady_clock::now();
    ZrIfHttpStream in(row.url.c_str(), std::ios::in);
    const auto seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    EXPECT_TRUE(in.fail()) << row.url;
    EXPECT_LT(seconds, 5.0) << row.url;
    ASSERT_EQ(capture.count(), 1u) << row.url << capture.all();
    EXPECT_EQ(capture.messages()[0].first, Zr::PrintError);
    EXPECT_EQ(capture.texts()[0].rfind("ZrIfHttpStream Error: ", 0), 0u);
    EXPECT_TRUE(capture.contains(row.why)) << capture.all();
  }
}

TEST_F(ZrIfHttpStreamTest, OverallTimeOutEndsASilentServer) {
  ZrIfHttpStream::setDefaultStallTimeoutMs(0);
  ZrIfHttpStream::setDefaultTimeoutMs(700);
  ZrTest::PrintCapture capture;
  const auto start = std::chrono::steady_clock::now();
  ZrIfHttpStream in(url("stall-headers").c_str(), std::ios::in);
  EXPECT_TRUE(in.fail());
  EXPECT_LT(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count(), 3.0);
  EXPECT_TRUE(capture.contains("imed out")) << capture.all();
}

TEST_F(ZrIfHttpStreamTest, ABodyThatStallsEndsTheStreamBadly) {
  ZrTest::PrintCapture capture;
  ZrIfHttpStream in(url("stall-body").c_str(), std::ios::in);
  ASSERT_FALSE(in.fail());
  EXPECT_EQ(readAll(in), "<root>");
  EXPECT_TRUE(in.bad());
  EXPECT_EQ(capture.count(), 1u) << capture.all();
}

TEST_F(ZrIfHttpStreamTest, StreamsALongBodyPieceByPiece) {
  const size_t size = 3 * 1000 * 1000 + 7;
  ZrIfHttpStream in(url("big/" + std::to_string(size)).c_str(), std::ios::in);
  ASSERT_FALSE(in.fail());
  // The window is far smaller than the body: no read may see more than it holds, and every byte
  // must come in order across the pauses and resumptions of the transfer.
  char piece[4096];
  size_t total = 0;
  bool inOrder = true;
  while (in.read(piece, sizeof(piece)) || in.gcount() > 0) {
    for (std::streamsize i = 0; i < in.gcount(); ++i) {
      const size_t position = total + static_cast<size_t>(i);
      const char expected = static_cast<char>('0' + (position % 65537) % 10);
      if (piece[i] != expected) inOrder = false;
    }
    total += static_cast<size_t>(in.gcount());
  }
  EXPECT_EQ(total, size);
  EXPECT_TRUE(inOrder);
  EXPECT_FALSE(in.bad());
  EXPECT_LE(in.rdbuf()->in_avail(), 0);
}

TEST_F(ZrIfHttpStreamTest, BodySizeLimitIsReported) {
  ZrIfHttpStream::setDefaultMaxBodySize(100000);
  ZrTest::PrintCapture capture;
  ZrIfHttpStream in(url("big/300000").c_str(), std::ios::in);
  ASSERT_FALSE(in.fail());
  const std::string body = readAll(in);
  EXPECT_LE(body.size(), 100000u);
  EXPECT_TRUE(in.bad());
  EXPECT_TRUE(capture.contains("larger than the limit of 100000 bytes")) << capture.all();
  ZrIfHttpStream::setDefaultMaxBodySize(0);
}

}  // namespace
