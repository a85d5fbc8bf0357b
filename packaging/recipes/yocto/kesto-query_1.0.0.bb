# Not tried with Yocto itself. Copy this file to recipes-httpd/kesto-query of a layer that depends on
# meta-oe, which has libtinyxml and pugixml, and set the folder of the sources in local.conf:
#
#     EXTERNALSRC:pn-kesto-query = "/path/to/kesto-query"

SUMMARY = "Configuration queries over CGI"
DESCRIPTION = "Form fields hold XPath expressions, and the answer is a JSON object."
LICENSE = "CLOSED"

inherit cmake externalsrc

DEPENDS = "libtinyxml pugixml"
RDEPENDS:${PN} = "bash psmisc"
RRECOMMENDS:${PN} = "lighttpd lighttpd-module-cgi"

EXTRA_OECMAKE = "-DKESTO_STATIC=OFF -DKESTO_CGI_DIR=${libdir}/cgi-bin"

FILES:${PN} += "${libdir}/cgi-bin"
