################################################################################
#
# kesto-query
#
################################################################################

# Not tried with Buildroot itself. Copy this folder to package/kesto-query of Buildroot or of an external
# tree, name its Config.in in the menu there, and set the folder of the sources:
#
#     make KESTO_QUERY_OVERRIDE_SRCDIR=/path/to/kesto-query

KESTO_QUERY_VERSION = 1.0.0
KESTO_QUERY_SITE = $(KESTO_QUERY_OVERRIDE_SRCDIR)
KESTO_QUERY_SITE_METHOD = local
KESTO_QUERY_LICENSE = PROPRIETARY
KESTO_QUERY_REDISTRIBUTE = NO
KESTO_QUERY_DEPENDENCIES = pugixml tinyxml
KESTO_QUERY_CONF_OPTS = -DKESTO_STATIC=$(if $(BR2_STATIC_LIBS),ON,OFF)

define KESTO_QUERY_INSTALL_TARGET_CMDS
	$(TARGET_MAKE_ENV) DESTDIR=$(TARGET_DIR) $(BR2_CMAKE) --install $(KESTO_QUERY_BUILDDIR) --component runtime
endef

$(eval $(cmake-package))
