#include "Service/Net/LabCertificate.h"

#include <boost/asio/ip/address.hpp>
#include <memory>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/rand.h>
#include <openssl/x509.h>
#include <openssl/x509v3.h>
#include <stdexcept>

namespace veranox {

namespace {

using Key = std::unique_ptr<EVP_PKEY, decltype(&EVP_PKEY_free)>;
using Certificate = std::unique_ptr<X509, decltype(&X509_free)>;
using Extension = std::unique_ptr<X509_EXTENSION, decltype(&X509_EXTENSION_free)>;

void require(bool isDone)
{
    if (!isDone)
        throw std::runtime_error("A certificate for the publication could not be made.");
}

void addName(X509 *certificate, const std::string &hostname)
{
    X509_NAME *name = X509_get_subject_name(certificate);
    const auto *text = reinterpret_cast<const unsigned char *>("Veranox lab");
    require(X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC, text, -1, -1, 0) == 1);
    require(X509_set_issuer_name(certificate, name) == 1);
    const std::string alternative = "DNS:" + hostname;
    const Extension extension(
        X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, alternative.c_str()), &X509_EXTENSION_free);
    require(extension && X509_add_ext(certificate, extension.get(), -1) == 1);
}

void addTimes(X509 *certificate)
{
    constexpr long hour = 60L * 60;
    constexpr long month = 30 * 24 * hour;
    require(X509_gmtime_adj(X509_getm_notBefore(certificate), -hour) != nullptr);
    require(X509_gmtime_adj(X509_getm_notAfter(certificate), month) != nullptr);
}

void addSerial(X509 *certificate)
{
    std::int32_t number = 0;
    require(RAND_bytes(reinterpret_cast<unsigned char *>(&number), sizeof number) == 1);
    require(ASN1_INTEGER_set_int64(X509_get_serialNumber(certificate), number & INT32_MAX) == 1);
}

Certificate certify(EVP_PKEY *key, const std::string &hostname)
{
    constexpr long version3 = 2;
    Certificate certificate(X509_new(), &X509_free);
    require(certificate && X509_set_version(certificate.get(), version3) == 1);
    addSerial(certificate.get());
    addTimes(certificate.get());
    addName(certificate.get(), hostname);
    require(X509_set_pubkey(certificate.get(), key) == 1);
    require(X509_sign(certificate.get(), key, EVP_sha256()) > 0);
    return certificate;
}

} // namespace

boost::asio::ssl::context selfSignedContext(const std::string &hostname)
{
    const Key key(EVP_EC_gen("P-256"), &EVP_PKEY_free);
    require(key != nullptr);
    const Certificate certificate = certify(key.get(), hostname);
    boost::asio::ssl::context context(boost::asio::ssl::context::tls_server);
    context.set_options(boost::asio::ssl::context::no_tlsv1 | boost::asio::ssl::context::no_tlsv1_1);
    require(SSL_CTX_use_certificate(context.native_handle(), certificate.get()) == 1);
    require(SSL_CTX_use_PrivateKey(context.native_handle(), key.get()) == 1);
    return context;
}

} // namespace veranox
