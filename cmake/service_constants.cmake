# Host names and domains of the service. A service sets its own for the build that it ships; the defaults are neutral.
set(ACCTKIT_ISP_PRIMARY_DOMAIN "mail.zuvio.example" CACHE STRING "The service's main mail domain")
set(ACCTKIT_ISP_LEGACY_DOMAIN "legacy.zuvio.example" CACHE STRING "The service's older mail domain")
set(ACCTKIT_ISP_MERGED_DOMAIN "merged.zuvio.example" CACHE STRING "Mail domain of a service merged into this one")
set(ACCTKIT_ISP_SMTP_HOST "smtp.zuvio.example" CACHE STRING "The service's SMTP host")
set(ACCTKIT_ISP_POP_HOST "pop.zuvio.example" CACHE STRING "The service's POP host")
set(ACCTKIT_ISP_MAIL_RELAY_HOST "relay.zuvio.example" CACHE STRING
    "SMTP host of the first line that a new Netscape 6 account gets")
set(ACCTKIT_ISP_FORUM_NEWS_HOST "forum.zuvio.example" CACHE STRING "Forum news host of the wizard")
set(ACCTKIT_ISP_SQUARE_NEWS_HOST "square.zuvio.example" CACHE STRING "Second news host of the wizard")
set(ACCTKIT_ISP_FORUM_NEWS_HOST_LEGACY "forum-news.zuvio.example" CACHE STRING
    "Forum news host under its older name, for the shorthand exports")
set(ACCTKIT_ISP_SQUARE_NEWS_HOST_LEGACY "square-news.zuvio.example" CACHE STRING
    "Second news host under its older name, for the shorthand exports")

configure_file(${PROJECT_SOURCE_DIR}/src/clients/service_constants.h.in
               ${PROJECT_BINARY_DIR}/generated/clients/service_constants.h @ONLY)
