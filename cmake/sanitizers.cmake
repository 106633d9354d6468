if(XUM_SANITIZE)
    add_compile_options(-fsanitize=${XUM_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=${XUM_SANITIZE})
endif()
