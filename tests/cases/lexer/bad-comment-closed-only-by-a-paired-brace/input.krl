#{ opened here
}}#
